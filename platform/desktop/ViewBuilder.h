// Makes the views of a container's controls, each by its kind.
#pragma once

#include "platform/controls/ListView.h"
#include "platform/controls/WebBrowser.h"
#include "platform/desktop/ControlArea.h"

namespace velmora {

class ViewBuilder : public ControlVisitor {
public:
    ViewBuilder(ControlArea& area, ViewContext& context) : area_(area), context_(context) {}

    void Build(Container& container);

    void Visit(CommandButton& control) override;
    void Visit(CheckBox& control) override;
    void Visit(TextBox& control) override;
    void Visit(Label& control) override;
    void Visit(Picture& control) override;
    void Visit(Frame& control) override;
    void Visit(SSTab& control) override;
    void Visit(StatusBar& control) override;
    void Visit(ListView& control) override;
    void Visit(WebBrowser& control) override;

private:
    /// Adds a widget that is a control's whole view, and takes its focus.
    void Put(Control& control, Gtk::Widget& widget, bool keepsTab = false);

    ControlArea& area_;
    ViewContext& context_;
};

}  // namespace velmora
