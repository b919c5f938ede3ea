// A panel with tabs on the screen.
#pragma once

#include <vector>

#include <gtkmm/box.h>

#include "platform/desktop/ControlArea.h"

namespace velmora {

class TabPanelView : public ControlArea {
public:
    TabPanelView(SSTab& control, ViewContext& context);

    /// The tabs themselves, which take the keyboard focus.
    Gtk::Widget& Strip() { return strip_; }
    /// Gives the focus to the tab that is shown.
    bool FocusShownTab();

protected:
    Gdk::Rectangle Place(const Control& control) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    void AddTab(int tab);
    void ShowTab();

    SSTab& control_;
    Gtk::Box& strip_;
    Clip& clip_;
    std::vector<Gtk::Widget*> tabs_;
    Subscription tab_, tabHeight_;
};

}  // namespace velmora
