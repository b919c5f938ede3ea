// The rows of a list as the toolkit asks for them: an object for a row is made only while the row is
// in sight. Rows that are added one by one in a rush are announced in batches: the toolkit goes through all
// of its rows at each of them, which takes a list of 100,000 minutes. The selection is the list's own,
// so that there is no second one to keep in step.
#pragma once

#include <chrono>

#include <giomm/listmodel.h>
#include <gtkmm/selectionmodel.h>
#include <sigc++/connection.h>

#include "platform/controls/ListView.h"

namespace velmora {

/// A place of a list, which goes with its row where others come and go, and shows another row after a sort: to the
/// toolkit that is the same object, so that it need not make its widgets anew.
class RowObject : public Glib::Object {
public:
    RowObject(velmora::ListView& list, int position);

    /// The row; null once it is gone from the list.
    ListItem* Row() const { return row_; }
    /// Raised when it is another one.
    Event<> RowChanged;

private:
    void OnRowsChanged(int position, int gone, int added);

    velmora::ListView& list_;
    int position_;  ///< From 0.
    ListItem* row_;
    Subscription rows_;
};

class ListModel : public Gio::ListModel, public Gtk::SelectionModel, public Glib::Object {
public:
    /// The list must outlive what shows the model.
    static Glib::RefPtr<velmora::ListModel> Create(velmora::ListView& list);

    ~ListModel() override { later_.disconnect(); }

protected:
    explicit ListModel(velmora::ListView& list);

    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

    bool is_selected_vfunc(guint position) const override;
    Glib::RefPtr<const Gtk::Bitset> get_selection_vfunc(guint position, guint count) override;
    bool select_item_vfunc(guint position, bool unselectRest) override;
    // The user chooses another row, never none.
    bool unselect_item_vfunc(guint) override { return false; }
    bool select_range_vfunc(guint, guint, bool) override { return false; }
    bool unselect_range_vfunc(guint, guint) override { return false; }
    bool select_all_vfunc() override { return false; }
    bool unselect_all_vfunc() override { return false; }
    bool set_selection_vfunc(const Glib::RefPtr<const Gtk::Bitset>&, const Glib::RefPtr<const Gtk::Bitset>&) override
    {
        return false;
    }

private:
    ListItem* RowAt(guint position) const;
    void OnRowsChanged(guint position, guint gone, guint added);
    /// Tells the toolkit of rows at the end that it has not heard of yet.
    void Announce();
    void AnnounceSoon();

    velmora::ListView& list_;
    guint announced_;  ///< Rows that the toolkit knows of; those after them are still to be announced.
    std::chrono::steady_clock::time_point nextAnnouncement_;  ///< Earliest time of the next one in a rush.
    sigc::connection later_;
    Subscription rows_, selection_;
};

}  // namespace velmora
