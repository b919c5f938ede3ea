// Looking for a text in a page.
#pragma once

#include <webkit/webkit.h>

#include "platform/glib/Callbacks.h"

namespace velmora {

/// A hidden row with a field for the text and buttons for the next and the previous place. It lives as
/// long as its widget.
class FindBar {
public:
    explicit FindBar(WebKitWebView* view);
    FindBar(const FindBar&) = delete;
    FindBar& operator=(const FindBar&) = delete;

    GtkWidget* Widget() const { return row_; }
    bool IsOpen() const { return gtk_widget_get_visible(row_); }

    /// Shows the row and puts the cursor into its field.
    void Open();
    /// Hides the row and gives the page the keyboard.
    void Close();
    /// Goes to the next place or the one before; opens the row if there is nothing to look for yet.
    void Step(bool isForward);

private:
    void AddButton(const char* name, const char* caption, Callbacks::Action pressed);
    void Search();

    WebKitWebView* view_;
    WebKitFindController* finder_;
    GtkWidget* row_;
    GtkWidget* text_;
    GtkWidget* outcome_;
    Callbacks callbacks_;
};

}  // namespace velmora
