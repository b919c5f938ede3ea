#include "platform/desktop/TabPanelView.h"

#include <gtkmm/button.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

TabPanelView::TabPanelView(SSTab& control, ViewContext& context)
    : Glib::ObjectBase("velmora_TabPanelView"), ControlArea(context), control_(control),
      strip_(*Gtk::make_managed<Gtk::Box>()), clip_(*Gtk::make_managed<Clip>(strip_))
{
    add_css_class("tabpanel");
    SetAccessibleRole(*this, Gtk::Accessible::Role::GROUP);
    SetAccessibleRole(strip_, Gtk::Accessible::Role::TAB_LIST);
    SetAccessibleName(strip_, DisplayText(control.AccessibleName()));
    strip_.add_css_class("tabstrip");
    for (int tab = 0; tab < static_cast<int>(control.Captions.size()); ++tab) AddTab(tab);
    clip_.set_parent(*this);
    ShowTab();
    tab_ = control.Tab.Changed.Connect([this] { ShowTab(); });
    tabHeight_ = control.TabHeight.Changed.Connect([this] { queue_allocate(); });
}

void TabPanelView::AddTab(int tab)
{
    auto* button = Gtk::make_managed<Gtk::Button>(DisplayText(control_.Captions[static_cast<std::size_t>(tab)]));
    SetAccessibleRole(*button, Gtk::Accessible::Role::TAB);
    button->set_name(control_.Name + "Tab" + std::to_string(tab));
    button->add_css_class("tab");
    button->signal_clicked().connect([this, tab] { control_.Tab = tab; });
    strip_.append(*button);
    tabs_.push_back(button);
}

void TabPanelView::ShowTab()
{
    for (std::size_t i = 0; i < tabs_.size(); ++i) {
        const bool isShown = static_cast<int>(i) == control_.Tab();
        if (isShown) {
            tabs_[i]->set_state_flags(Gtk::StateFlags::CHECKED, false);
        } else {
            tabs_[i]->unset_state_flags(Gtk::StateFlags::CHECKED);
        }
        SetAccessibleSelected(*tabs_[i], isShown);
    }
    queue_allocate();
}

bool TabPanelView::FocusShownTab()
{
    const auto shown = static_cast<std::size_t>(control_.Tab());
    return shown < tabs_.size() && tabs_[shown]->grab_focus();
}

Gdk::Rectangle TabPanelView::Place(const Control& control) const
{
    return control.Page() == control_.Tab() ? ControlArea::Place(control) : Gdk::Rectangle(0, 0, 0, 0);
}

void TabPanelView::size_allocate_vfunc(int width, int height, int baseline)
{
    PutAt(clip_, {0, 0, width, Edge(control_.TabHeight())});
    ControlArea::size_allocate_vfunc(width, height, baseline);
}

}  // namespace velmora
