#include "platform/desktop/HeaderKeys.h"

#include <algorithm>

#include <gtkmm/adjustment.h>
#include <gtkmm/eventcontrollerfocus.h>
#include <gtkmm/eventcontrollerkey.h>

namespace velmora {

HeaderKeys::HeaderKeys(Gtk::ColumnView& view, std::function<bool()> isAtTop, std::function<void(int column)> press)
    : view_(view), isAtTop_(std::move(isAtTop)), press_(std::move(press))
{
    auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType state) { return OnListKey(key, state); }, false);
    view.add_controller(keys);
}

void HeaderKeys::Add(Gtk::Widget& title)
{
    const std::size_t number = titles_.size();
    titles_.push_back(&title);
    if (Gtk::Widget* header = title.get_parent()) {
        header->set_can_focus(true);  // the toolkit keeps it out
        header->set_focusable(false);
    }
    auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this, number](guint key, guint, Gdk::ModifierType) { return OnTitleKey(number, key); }, false);
    title.add_controller(keys);
    // Only on the way: otherwise the Tab key would stop at every title before the rows.
    auto focus = Gtk::EventControllerFocus::create();
    focus->signal_leave().connect([&title] { title.set_focusable(false); });
    title.add_controller(focus);
}

bool HeaderKeys::OnListKey(guint key, Gdk::ModifierType state)
{
    const auto modifiers =
        Gdk::ModifierType::SHIFT_MASK | Gdk::ModifierType::CONTROL_MASK | Gdk::ModifierType::ALT_MASK;
    if (key != GDK_KEY_Up || (state & modifiers) != Gdk::ModifierType{}) return false;
    for (const Gtk::Widget* title : titles_) {
        if (title->has_focus()) return false;
    }
    return isAtTop_() && FocusTitle(0);
}

bool HeaderKeys::OnTitleKey(std::size_t title, guint key)
{
    switch (key) {
    case GDK_KEY_Up: break;  // the titles are the upper end
    case GDK_KEY_Left:
        if (title > 0) FocusTitle(title - 1);
        break;
    case GDK_KEY_Right: FocusTitle(title + 1); break;
    case GDK_KEY_Down:
        // The rows are the view's last child; the titles' row is the first.
        if (Gtk::Widget* rows = view_.get_last_child()) {
            if (!rows->child_focus(Gtk::DirectionType::TAB_FORWARD)) rows->grab_focus();
        }
        break;
    case GDK_KEY_Return:
    case GDK_KEY_KP_Enter:
    case GDK_KEY_space: press_(static_cast<int>(title) + 1); break;
    default: return false;
    }
    return true;
}

bool HeaderKeys::FocusTitle(std::size_t title)
{
    if (title >= titles_.size()) return false;
    titles_[title]->set_focusable(true);
    Reveal(*titles_[title]);
    return titles_[title]->grab_focus();
}

void HeaderKeys::Reveal(Gtk::Widget& title)
{
    const auto scroll = view_.get_hadjustment();
    graphene_rect_t bounds;
    if (!scroll || !gtk_widget_compute_bounds(title.gobj(), GTK_WIDGET(view_.gobj()), &bounds)) return;
    const double left = bounds.origin.x;
    const double beyond = left + bounds.size.width - view_.get_width();
    if (left < 0) scroll->set_value(scroll->get_value() + left);
    if (beyond > 0) scroll->set_value(scroll->get_value() + std::min(beyond, left));
}

}  // namespace velmora
