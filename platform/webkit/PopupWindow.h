// A window that a page opened and the user let through.
#pragma once

#include <webkit/webkit.h>

namespace velmora {

/// A plain window with a view of its own, related to `opener` and with its settings, outside capture
/// and playback. It shows itself when the page is ready and ends when it is closed, by the user or
/// by the page. Gives the view, as the engine's `create` signal wants it.
WebKitWebView* OpenPopup(WebKitWebView* opener);

}  // namespace velmora
