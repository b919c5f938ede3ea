#include "platform/desktop/MenuView.h"

#include <cctype>

#include "platform/desktop/DisplayText.h"

namespace velmora {
namespace {

/// A caption as a menu takes it: an underline in it is no mark of an access key.
std::string Escaped(const std::string& caption)
{
    const Glib::ustring text = DisplayText(caption);
    std::string label;
    for (const char c : text.raw()) label.append(c == '_' ? 2 : 1, c);
    return label;
}

/// The caption with an access key that is not in `taken` yet: its first letter that is free.
std::string WithAccessKey(const std::string& caption, std::string& taken)
{
    std::string label = Escaped(caption);
    for (std::size_t i = 0; i < label.size(); ++i) {
        const auto letter = static_cast<unsigned char>(label[i]);
        const char key = static_cast<char>(std::tolower(letter));
        if (letter >= 0x80 || !std::isalnum(letter) || taken.find(key) != std::string::npos) continue;
        taken += key;
        label.insert(i, 1, '_');
        return label;
    }
    return label;
}

}  // namespace

MenuView::MenuView(const std::vector<MenuItem*>& menu)
{
    auto bar = Gio::Menu::create();
    std::string taken;
    for (MenuItem* item : menu) bar->append_submenu(WithAccessKey(item->Caption, taken), Entries(item->Children));
    bar_ = Gtk::make_managed<Gtk::PopoverMenuBar>(bar);
}

Glib::RefPtr<Gio::Menu> MenuView::Entries(const std::vector<MenuItem*>& items)
{
    auto entries = Gio::Menu::create();
    auto section = Gio::Menu::create();
    for (MenuItem* item : items) {
        if (item->Caption == "-") {
            entries->append_section(section);
            section = Gio::Menu::create();
        } else if (!item->Children.empty()) {
            section->append_submenu(Escaped(item->Caption), Entries(item->Children));
        } else {
            AddAction(*item);
            section->append(Escaped(item->Caption), "menu." + item->Name);
        }
    }
    entries->append_section(section);
    return entries;
}

void MenuView::AddAction(MenuItem& item)
{
    auto action = item.Checkable ? Gio::SimpleAction::create_bool(item.Name, item.Checked())
                                 : Gio::SimpleAction::create(item.Name);
    // The check mark is the item's own: a click does not change it.
    action->signal_activate().connect([this, &item](const Glib::VariantBase&) {
        if (Chosen) Chosen();
        item.Click.Raise();
    });
    actions_->add_action(action);
    if (!item.Checkable) return;
    subscriptions_.push_back(item.Checked.Changed.Connect(
        [action, &item] { action->set_state(Glib::Variant<bool>::create(item.Checked())); }));
}

}  // namespace velmora
