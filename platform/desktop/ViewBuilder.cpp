#include "platform/desktop/ViewBuilder.h"

#include <cmath>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/ButtonView.h"
#include "platform/desktop/CheckBoxView.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/LabelView.h"
#include "platform/desktop/ListTable.h"
#include "platform/desktop/PictureView.h"
#include "platform/desktop/StatusBarView.h"
#include "platform/desktop/TabPanelView.h"
#include "platform/desktop/TextBoxView.h"

namespace velmora {
namespace {

/// The caption of the label that stands to the left of a control in its row; empty if there is none.
std::string LabelBefore(const Control& control)
{
    constexpr Twips kRow = 300;
    const Label* nearest = nullptr;
    for (const Control* other : control.Parent.Controls) {
        const auto* label = dynamic_cast<const Label*>(other);
        if (!label || label->Page != control.Page || label->Left() > control.Left()) continue;
        if (std::abs(label->Top() - control.Top()) > kRow) continue;
        if (!nearest || label->Left() > nearest->Left()) nearest = label;
    }
    return nearest ? nearest->Caption() : std::string();
}

}  // namespace

void ViewBuilder::Build(Container& container)
{
    for (Control* control : container.Controls) control->Accept(*this);
}

void ViewBuilder::Put(Control& control, Gtk::Widget& widget, bool keepsTab)
{
    ControlSlot& place = area_.Add(control, widget, widget);
    context_.stops.push_back({&control, &widget, &place, keepsTab});
}

void ViewBuilder::Visit(CommandButton& control)
{
    auto* button = Gtk::make_managed<ButtonView>(control);
    Put(control, *button);
    if (control.Default) context_.defaultButton = button;
    if (control.Cancel) context_.cancelButton = &control;
}

void ViewBuilder::Visit(CheckBox& control) { Put(control, *Gtk::make_managed<CheckBoxView>(control)); }

void ViewBuilder::Visit(TextBox& control)
{
    auto* entry = Gtk::make_managed<TextBoxView>(control);
    if (const std::string name = LabelBefore(control); !name.empty()) SetAccessibleName(*entry, OneLine(name));
    Put(control, *entry);
}

void ViewBuilder::Visit(Label& control)
{
    auto* label = Gtk::make_managed<LabelView>(control);
    area_.Add(control, *label, *label);
}

void ViewBuilder::Visit(Picture& control)
{
    auto* picture = Gtk::make_managed<PictureView>(control);
    area_.Add(control, *picture, *picture);
}

void ViewBuilder::Visit(Frame& control)
{
    auto* inside = Gtk::make_managed<ControlArea>(context_);
    area_.Add(control, *inside, *inside);
    ViewBuilder(*inside, context_).Build(control);
}

void ViewBuilder::Visit(SSTab& control)
{
    auto* panel = Gtk::make_managed<TabPanelView>(control, context_);
    ControlSlot& place = area_.Add(control, *panel, *panel);
    const auto enter = [panel](Gtk::DirectionType) { return panel->FocusShownTab(); };
    context_.stops.push_back({&control, &panel->Strip(), &place, false, enter});
    ViewBuilder(*panel, context_).Build(control);
}

void ViewBuilder::Visit(StatusBar& control)
{
    auto* bar = Gtk::make_managed<StatusBarView>(control);
    area_.Add(control, *bar, *bar);
}

void ViewBuilder::Visit(ListView& control)
{
    auto* table = Gtk::make_managed<ListTable>(control);
    ControlSlot& place = area_.Add(control, *table, table->Columns());
    const auto enter = [table](Gtk::DirectionType direction) { return table->TakeFocus(direction); };
    context_.stops.push_back({&control, &table->Columns(), &place, false, enter});
}

void ViewBuilder::Visit(WebBrowser& control)
{
    Gtk::Widget* page = context_.browserWidget ? context_.browserWidget(control) : nullptr;
    if (page) Put(control, *page, true);
}

}  // namespace velmora
