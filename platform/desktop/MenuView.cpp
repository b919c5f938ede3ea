#include "platform/desktop/MenuView.h"

#include <gtk/gtk.h>

#include <cctype>
#include <string_view>

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

/// The place of an entry's check mark in the toolkit's own "role", which is not public.
constexpr int kCheckMark = 1;

void SetName(gpointer part, const char* name)
{
    gtk_accessible_update_property(GTK_ACCESSIBLE(part), GTK_ACCESSIBLE_PROPERTY_LABEL, name, -1);
}

/// An entry has its words of its own: newer toolkits send the reader to its label instead, which then has none. One
/// with a check mark is told as such, also while it has none.
void DescribeEntry(GtkWidget* entry)
{
    for (GtkWidget* child = gtk_widget_get_first_child(entry); child; child = gtk_widget_get_next_sibling(child)) {
        if (!GTK_IS_LABEL(child)) continue;
        gtk_accessible_reset_relation(GTK_ACCESSIBLE(entry), GTK_ACCESSIBLE_RELATION_LABELLED_BY);
        SetName(entry, gtk_label_get_text(GTK_LABEL(child)));
    }
    int kind = 0;
    GtkAccessibleRole role = GTK_ACCESSIBLE_ROLE_MENU_ITEM;
    g_object_get(entry, "role", &kind, "accessible-role", &role, nullptr);
    if (kind != kCheckMark || role != GTK_ACCESSIBLE_ROLE_MENU_ITEM) return;
    g_object_set(entry, "accessible-role", GTK_ACCESSIBLE_ROLE_MENU_ITEM_CHECKBOX, nullptr);
}

/// The boxes that the toolkit builds its menus of have no words of their own.
void DescribeInside(GtkWidget* part)
{
    if (std::string_view(G_OBJECT_TYPE_NAME(part)) == "GtkModelButton") {
        DescribeEntry(part);
    } else if (GTK_IS_STACK(part)) {
        const Glib::RefPtr<Gio::ListModel> pages = Glib::wrap(G_LIST_MODEL(gtk_stack_get_pages(GTK_STACK(part))));
        for (guint i = 0; i < pages->get_n_items(); ++i) SetName(pages->get_object(i)->gobj(), "");
    } else if (!GTK_IS_LABEL(part)) {
        SetName(part, "");
    }
    for (GtkWidget* child = gtk_widget_get_first_child(part); child; child = gtk_widget_get_next_sibling(child)) {
        DescribeInside(child);
    }
}

}  // namespace

MenuView::MenuView(const std::vector<MenuItem*>& menu)
{
    auto bar = Gio::Menu::create();
    std::string taken;
    for (MenuItem* item : menu) bar->append_submenu(WithAccessKey(item->Caption, taken), Entries(item->Children));
    bar_ = Gtk::make_managed<Gtk::PopoverMenuBar>(bar);
}

void MenuView::Describe()
{
    GtkWidget* const bar = GTK_WIDGET(bar_->gobj());
    SetName(bar, "Menu");
    for (GtkWidget* title = gtk_widget_get_first_child(bar); title; title = gtk_widget_get_next_sibling(title)) {
        for (GtkWidget* part = gtk_widget_get_first_child(title); part; part = gtk_widget_get_next_sibling(part)) {
            if (GTK_IS_POPOVER_MENU(part)) DescribeInside(part);
        }
    }
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
