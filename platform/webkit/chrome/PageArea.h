// A view with what belongs around it: the row for looking for a text, and the keys for that and for
// the size of the page.
#pragma once

#include <webkit/webkit.h>

namespace velmora {

/// A box with the view and, below it, the hidden find row. A key is the page's first; what it leaves
/// is taken here: Ctrl+F, F3, Shift+F3 and Escape for finding, Ctrl with plus, minus, 0 and the mouse
/// wheel for the size.
GtkWidget* NewPageArea(WebKitWebView* view);

}  // namespace velmora
