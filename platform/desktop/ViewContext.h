// What the views of one window share.
#pragma once

#include <functional>
#include <vector>

#include <gtkmm/button.h>
#include <gtkmm/widget.h>

#include "platform/controls/WebBrowser.h"

namespace velmora {

/// A place in the keyboard's tab order.
struct FocusStop {
    Control* control;
    Gtk::Widget* widget;
    Gtk::Widget* place;     ///< What gives the control its place.
    bool keepsTab = false;  ///< Tab goes from place to place within it before it leaves.
    /// Takes the focus that the Tab key brings from elsewhere; empty: as the toolkit does it.
    std::function<bool(Gtk::DirectionType)> enter = {};

    /// True if the focus is in the widget, or at its place while it is disabled.
    bool HoldsFocus() const;
    /// Gives it the focus; false if it cannot take it now.
    bool Enter(Gtk::DirectionType direction) const;
};

class ViewContext {
public:
    ViewContext() = default;
    ~ViewContext() { later_.disconnect(); }
    ViewContext(const ViewContext&) = delete;
    ViewContext& operator=(const ViewContext&) = delete;

    /// Moves the keyboard focus to a control's widget, at once or, while sizes are being given out,
    /// right afterwards: the toolkit takes no new focus in the middle of that.
    void MoveFocus(Gtk::Widget& widget);
    /// The stops that are in the tab order, in that order.
    std::vector<FocusStop> TabOrder() const;
    /// The widget that takes a control's focus; null if there is none.
    Gtk::Widget* Find(const Control& control) const;

    std::function<Gtk::Widget*(WebBrowser&)> browserWidget;
    std::vector<FocusStop> stops;           ///< All that can have the focus, in the order of the controls.
    Gtk::Button* defaultButton = nullptr;   ///< Enter presses it.
    CommandButton* cancelButton = nullptr;  ///< Escape presses it.
    bool allocating = false;                ///< Sizes are being given out.

private:
    sigc::connection later_;
};

/// True if the focus of the widget's window is the widget or inside it.
bool HoldsFocus(Gtk::Widget& widget);

}  // namespace velmora
