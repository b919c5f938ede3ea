// The menu bar of a window.
#pragma once

#include <functional>
#include <vector>

#include <giomm/menu.h>
#include <giomm/simpleaction.h>
#include <giomm/simpleactiongroup.h>
#include <gtkmm/popovermenubar.h>

#include "platform/controls/Controls.h"

namespace velmora {

class MenuView {
public:
    /// Makes the bar from the menu tree, whose items must outlive this.
    explicit MenuView(const std::vector<MenuItem*>& menu);

    Gtk::PopoverMenuBar& Bar() { return *bar_; }
    /// The actions that the bar's entries stand for; the bar finds them as "menu.<name of the item>".
    Glib::RefPtr<Gio::ActionGroup> Actions() const { return actions_; }

    /// Tells screen readers what is in the menus; once the actions can be found and before the bar is first shown.
    void Describe();

    /// Called when the user has chosen an entry, before the entry's Click.
    std::function<void()> Chosen;

private:
    Glib::RefPtr<Gio::Menu> Entries(const std::vector<MenuItem*>& items);
    void AddAction(MenuItem& item);

    Glib::RefPtr<Gio::SimpleActionGroup> actions_ = Gio::SimpleActionGroup::create();
    std::vector<Subscription> subscriptions_;
    Gtk::PopoverMenuBar* bar_ = nullptr;
};

}  // namespace velmora
