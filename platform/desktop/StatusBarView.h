// A status bar on the screen: panels side by side.
#pragma once

#include <vector>

#include <gtkmm/label.h>

#include "platform/controls/Controls.h"
#include "platform/desktop/Clip.h"

namespace velmora {

class StatusBarView : public FreeWidget {
public:
    explicit StatusBarView(velmora::StatusBar& control);

protected:
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    void AddPanel(int i);
    /// Fits the type of a panel to the room that it has on the bar. The first panel, a line of messages of any
    /// length, keeps its type and ends in dots.
    void Fit(int i);

    velmora::StatusBar& control_;
    std::vector<Gtk::Widget*> panels_;
    std::vector<Gtk::Label*> labels_;
    std::vector<int> rooms_;  // How wide each panel is drawn, in pixels.
    std::vector<Subscription> subscriptions_;
};

}  // namespace velmora
