// A text box on the screen: one line.
#pragma once

#include <gtkmm/entry.h>

#include "platform/controls/Controls.h"

namespace velmora {

class TextBoxView : public Gtk::Entry {
public:
    explicit TextBoxView(TextBox& control);

private:
    void ShowText();
    void TakeText();

    TextBox& control_;
    bool isShowing_ = false;  ///< The entry is taking the control's text, which is no edit.
    bool isTaking_ = false;   ///< The control is taking the entry's text, which needs no showing.
    Subscription text_;
};

}  // namespace velmora
