// One download that runs, as the user sees it.
#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <string>

#include "platform/glib/Callbacks.h"

namespace velmora {

/// A row with the file's name, how far it is, and a button that cancels it. It is made as a child of
/// `parent` and goes with this object.
class DownloadRow {
public:
    DownloadRow(GtkBox* parent, const std::string& name, WebKitDownload* download, std::function<void()> cancel);
    ~DownloadRow();
    DownloadRow(const DownloadRow&) = delete;
    DownloadRow& operator=(const DownloadRow&) = delete;

    /// Shows how far the download is.
    void Update();

private:
    GtkBox* parent_;
    WebKitDownload* download_;
    GtkWidget* row_;
    GtkWidget* progress_;
    Callbacks callbacks_;
};

}  // namespace velmora
