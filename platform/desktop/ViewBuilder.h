// Makes the views of a container's controls, each by its kind.
#pragma once

#include "platform/controls/ListView.h"
#include "platform/controls/WebBrowser.h"
#include "platform/desktop/ControlArea.h"

namespace velmora {

class ViewBuilder {
public:
    ViewBuilder(ControlArea& area, ViewContext& context) : area_(area), context_(context) {}

    void Build(Container& container);

private:
    /// Makes the view if the control is of this kind.
    template <class Kind>
    bool MakeIf(Control& control);

    void Make(CommandButton& control);
    void Make(CheckBox& control);
    void Make(TextBox& control);
    void Make(Label& control);
    void Make(Picture& control);
    void Make(Frame& control);
    void Make(SSTab& control);
    void Make(StatusBar& control);
    void Make(ListView& control);
    void Make(WebBrowser& control);
    /// Adds a widget that is a control's whole view, and takes its focus.
    void Put(Control& control, Gtk::Widget& widget, bool keepsTab = false);

    ControlArea& area_;
    ViewContext& context_;
};

}  // namespace velmora
