// Windows that pages opened and the user let through.
#pragma once

#include <webkit/webkit.h>

#include <list>

#include "platform/glib/Callbacks.h"
#include "platform/webkit/chrome/ViewServices.h"

namespace velmora {

/// Plain windows, each with a view of its own, outside capture and playback. A window shows itself
/// when its page is ready and ends when it is closed, by the user or by the page; all end with this.
class PopupWindows {
public:
    explicit PopupWindows(ViewServices& services) : services_(services) {}
    ~PopupWindows();
    PopupWindows(const PopupWindows&) = delete;
    PopupWindows& operator=(const PopupWindows&) = delete;

    /// A window with a view related to `opener` and with its settings. Gives the view, as the engine's
    /// `create` signal wants it; null when too many windows are open.
    WebKitWebView* Open(WebKitWebView* opener);

private:
    void Watch(WebKitWebView* view, GtkWindow* window);
    /// A window that was opened for a file, or for another program, has nothing to show.
    void CloseIfEmpty(WebKitWebView* view);
    void Close(WebKitWebView* view);

    ViewServices& services_;
    std::list<GtkWindow*> windows_;
    Callbacks callbacks_;
};

}  // namespace velmora
