// A dialog on the screen, for as long as it is open.
#pragma once

#include <gtkmm/window.h>

#include "platform/controls/Controls.h"
#include "platform/desktop/ViewContext.h"
#include "platform/desktop/WindowPlace.h"

namespace velmora {

class DialogView {
public:
    /// Makes the views of the dialog's controls. The dialog must outlive this.
    explicit DialogView(velmora::Window& dialog);

    /// Puts the window on the screen, in front of `parent` if there is one.
    void Show(Gtk::Window* parent);
    Gtk::Window& Surface() { return window_; }

private:
    /// Gives the focus to the dialog's first control.
    void FocusFirst();
    /// Tells the dialog that the user wants it closed. One that nobody hides is hidden here, since
    /// nothing else could be reached any more.
    void Close();
    void OnEscape();

    velmora::Window& dialog_;
    ViewContext context_;
    Gtk::Window window_;
    WindowPlace place_;
    Subscription caption_;
};

}  // namespace velmora
