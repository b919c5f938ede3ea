// Downloads: where each goes, how far it is, how it ended.
#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <list>
#include <memory>
#include <string>

#include "platform/Dialogs.h"
#include "platform/Turns.h"
#include "platform/glib/Callbacks.h"
#include "platform/webkit/chrome/DownloadRow.h"

namespace velmora {

/// Whether what the server answers is to be saved rather than shown: the server says so, or it is a
/// page's main resource of a kind that cannot be shown.
bool IsForSaving(WebKitResponsePolicyDecision* decision);

class Downloads {
public:
    /// Takes care of all downloads of the session, which must outlive this. The user is asked where
    /// each is to go, one at a time and without being kept from anything else, and told how it ended.
    Downloads(WebKitNetworkSession* session, Dialogs& dialogs, Turns& turns);
    /// Cancels what is not at its end.
    ~Downloads();
    Downloads(const Downloads&) = delete;
    Downloads& operator=(const Downloads&) = delete;

    /// The list of the downloads that run; hidden while there is none.
    GtkWidget* Widget() const { return scroller_.get(); }

    /// A page's navigation, or a part of it, has become a download. The view may be null.
    std::function<void(WebKitWebView*)> Started;

private:
    struct Item {
        std::shared_ptr<WebKitDownload> download;
        std::string name;
        bool waits = false;  ///< For the user to say where it goes.
        std::unique_ptr<DownloadRow> row;
        bool isCancelled = false;
        std::string failure;
    };

    void Take(WebKitDownload* download);
    void Follow(WebKitDownload* download);
    void Cancel(Item& item);
    Item* Find(WebKitDownload* download);
    void AskNext();
    void ShowChooser(const Item& item);
    void Choose(int response);
    void Save(Item& item, const std::string& path);
    void CloseChooser();
    void Finish(WebKitDownload* download);
    void ShowList();

    WebKitNetworkSession* session_;
    Dialogs& dialogs_;
    Turns& turns_;
    std::shared_ptr<GtkWidget> scroller_;
    std::shared_ptr<GtkWidget> rows_;
    std::list<Item> items_;
    std::shared_ptr<GtkFileChooserNative> chooser_;
    WebKitDownload* asked_ = nullptr;  ///< What the open chooser is for.
    Callbacks callbacks_;
};

}  // namespace velmora
