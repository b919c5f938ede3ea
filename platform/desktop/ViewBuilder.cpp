#include "platform/desktop/ViewBuilder.h"

#include "platform/desktop/ListTable.h"
#include "platform/desktop/StatusBarView.h"
#include "platform/desktop/TabPanelView.h"
#include "platform/desktop/WidgetViews.h"

namespace velmora {

template <class Kind>
bool ViewBuilder::MakeIf(Control& control)
{
    auto* const own = dynamic_cast<Kind*>(&control);
    if (own) Make(*own);
    return own != nullptr;
}

void ViewBuilder::Build(Container& container)
{
    for (Control* control : container.Controls) {
        // A control is of one kind only; with a kind that is not listed it has no view.
        [[maybe_unused]] const bool isMade = MakeIf<CommandButton>(*control) || MakeIf<CheckBox>(*control) ||
                                             MakeIf<TextBox>(*control) || MakeIf<Label>(*control) ||
                                             MakeIf<Picture>(*control) || MakeIf<Frame>(*control) ||
                                             MakeIf<SSTab>(*control) || MakeIf<StatusBar>(*control) ||
                                             MakeIf<ListView>(*control) || MakeIf<WebBrowser>(*control);
    }
}

void ViewBuilder::Put(Control& control, Gtk::Widget& widget, bool keepsTab)
{
    ControlSlot& place = area_.Add(control, widget, widget);
    context_.stops.push_back({&control, &widget, &place, keepsTab});
}

void ViewBuilder::Make(CommandButton& control)
{
    Gtk::Button& button = MakeView(control);
    Put(control, button);
    if (control.Keys.Default) context_.defaultButton = &button;
    if (control.Keys.Cancel) context_.cancelButton = &control;
}

void ViewBuilder::Make(CheckBox& control) { Put(control, MakeView(control)); }

void ViewBuilder::Make(TextBox& control) { Put(control, MakeView(control)); }

void ViewBuilder::Make(Label& control)
{
    Gtk::Widget& view = MakeView(control);
    area_.Add(control, view, view);
}

void ViewBuilder::Make(Picture& control)
{
    Gtk::Widget& view = MakeView(control);
    area_.Add(control, view, view);
}

void ViewBuilder::Make(Frame& control)
{
    auto* inside = Gtk::make_managed<ControlArea>(context_);
    area_.Add(control, *inside, *inside);
    ViewBuilder(*inside, context_).Build(control);
}

void ViewBuilder::Make(SSTab& control)
{
    auto* panel = Gtk::make_managed<TabPanelView>(control, context_);
    ControlSlot& place = area_.Add(control, *panel, *panel);
    const auto enter = [panel](Gtk::DirectionType) { return panel->FocusShownTab(); };
    context_.stops.push_back({&control, &panel->Strip(), &place, false, enter});
    ViewBuilder(*panel, context_).Build(control);
}

void ViewBuilder::Make(StatusBar& control)
{
    auto* bar = Gtk::make_managed<StatusBarView>(control);
    area_.Add(control, *bar, *bar);
}

void ViewBuilder::Make(ListView& control)
{
    auto* table = Gtk::make_managed<ListTable>(control);
    ControlSlot& place = area_.Add(control, *table, table->Columns());
    const auto enter = [table](Gtk::DirectionType direction) { return table->TakeFocus(direction); };
    context_.stops.push_back({&control, &table->Columns(), &place, false, enter});
}

void ViewBuilder::Make(WebBrowser& control)
{
    Gtk::Widget* page = context_.browserWidget ? context_.browserWidget(control) : nullptr;
    if (page) Put(control, *page, true);
}

}  // namespace velmora
