#include "platform/desktop/ListModel.h"

#include <algorithm>

#include <glibmm/main.h>
#include <gtkmm/bitset.h>

namespace velmora {

constexpr std::chrono::milliseconds kShortestPause{50};

RowObject::RowObject(velmora::ListView& list, int position)
    : Glib::ObjectBase("velmora_RowObject"), list_(list), position_(position), row_(&list.Item(position + 1))
{
    rows_ = list.RowsChanged.Connect(sigc::mem_fun(*this, &RowObject::OnRowsChanged));
}

void RowObject::OnRowsChanged(int position, int gone, int added)
{
    if (!row_ || position_ < position) return;
    if (position_ >= position + gone) {
        position_ += added - gone;
    } else {
        row_ = gone == added ? &list_.Item(position_ + 1) : nullptr;
        RowChanged.Raise();
    }
}

Glib::RefPtr<velmora::ListModel> ListModel::Create(velmora::ListView& list)
{
    return Glib::make_refptr_for_instance<velmora::ListModel>(new velmora::ListModel(list));
}

ListModel::ListModel(velmora::ListView& list)
    : Glib::ObjectBase("velmora_ListModel"), list_(list), announced_(static_cast<guint>(list.Count()))
{
    rows_ = list.RowsChanged.Connect([this](int position, int gone, int added) {
        OnRowsChanged(static_cast<guint>(position), static_cast<guint>(gone), static_cast<guint>(added));
    });
    selection_ = list.SelectionChanged.Connect([this] {
        // Which rows lost and won the mark is not known; only those in sight are looked at again.
        if (announced_ > 0) selection_changed(0, announced_);
    });
}

void ListModel::OnRowsChanged(guint position, guint gone, guint added)
{
    const bool isAtEnd = gone == 0 && position >= announced_;
    if (isAtEnd) {
        AnnounceSoon();
        return;
    }
    if (gone == added) {
        // The places have their new rows by themselves. Which of them is selected is asked anew.
        if (announced_ > 0) selection_changed(0, announced_);
        return;
    }
    later_.disconnect();
    const auto count = static_cast<guint>(list_.Count());
    const guint before = announced_;
    announced_ = count;
    if (before + added == count + gone) {
        items_changed(position, gone, added);
    } else {
        // Some rows at the end were not announced yet: all after the change is announced anew.
        const guint first = std::min(position, before);
        items_changed(first, before - first, count - first);
    }
}

void ListModel::AnnounceSoon()
{
    if (later_.connected()) return;
    if (std::chrono::steady_clock::now() > nextAnnouncement_) {
        Announce();
        return;
    }
    const auto announce = [this] {
        Announce();
        return false;
    };
    later_ = Glib::signal_timeout().connect(announce, static_cast<unsigned>(kShortestPause.count()));
}

void ListModel::Announce()
{
    const auto start = std::chrono::steady_clock::now();
    const guint before = announced_;
    announced_ = static_cast<guint>(list_.Count());
    if (announced_ > before) items_changed(before, 0, announced_ - before);
    // The longer the list, the longer the toolkit takes; it must not come to do nothing else.
    const auto end = std::chrono::steady_clock::now();
    nextAnnouncement_ = end + std::max<std::chrono::steady_clock::duration>(kShortestPause, (end - start) * 20);
}

GType ListModel::get_item_type_vfunc() { return G_TYPE_OBJECT; }

guint ListModel::get_n_items_vfunc() { return announced_; }

gpointer ListModel::get_item_vfunc(guint position)
{
    // The caller takes over the reference that the new object is born with.
    return RowAt(position) ? (new RowObject(list_, static_cast<int>(position)))->gobj() : nullptr;
}

bool ListModel::is_selected_vfunc(guint position) const
{
    const ListItem* row = RowAt(position);
    return row && row == list_.SelectedItem();
}

Glib::RefPtr<const Gtk::Bitset> ListModel::get_selection_vfunc(guint position, guint count)
{
    auto selection = Gtk::Bitset::create();
    const guint end = position + std::min(count, announced_ - std::min(position, announced_));
    for (guint i = position; list_.SelectedItem() && i < end; ++i) {
        if (!is_selected_vfunc(i)) continue;
        selection->add(i);
        break;
    }
    return selection;
}

bool ListModel::select_item_vfunc(guint position, bool)
{
    ListItem* row = RowAt(position);
    if (row) list_.Select(row);
    return row != nullptr;
}

ListItem* ListModel::RowAt(guint position) const
{
    // A row that is gone from the list may still be announced while its removal is being announced.
    if (position >= announced_ || position >= static_cast<guint>(list_.Count())) return nullptr;
    return &list_.Item(static_cast<int>(position) + 1);
}

}  // namespace velmora
