#include "platform/desktop/StatusBarView.h"

#include <algorithm>
#include <utility>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Caption.h"
#include "platform/desktop/Clip.h"
#include "platform/desktop/ControlArea.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {
namespace {

constexpr int kPanelInset = 9;   // Padding and border of a panel, as the style sheet has them.
constexpr int kLineHeight = 16;  // Room for one line of type.

std::string WithoutDots(const std::string& text) { return text.substr(0, text.find_last_not_of('.') + 1); }

}  // namespace

StatusBarView::StatusBarView(velmora::StatusBar& control) : Glib::ObjectBase("velmora_StatusBarView"), control_(control)
{
    SetAccessibleRole(*this, Gtk::Accessible::Role::STATUS);
    SetAccessibleName(*this, "Status");
    add_css_class("statusline");
    for (int i = 1; i <= control.PanelCount(); ++i) AddPanel(i);
}

void StatusBarView::AddPanel(int i)
{
    Panel& panel = control_.Panels(i);
    auto* label = Gtk::make_managed<Gtk::Label>(OneLine(panel.Text()));
    SetAccessibleName(*label, label->get_text());
    label->set_name(control_.Name + "Panel" + std::to_string(i));
    label->set_single_line_mode(true);
    label->set_ellipsize(Pango::EllipsizeMode::END);
    label->set_xalign(0);
    auto* clip = Gtk::make_managed<Clip>(*label);
    clip->add_css_class("panel");
    clip->set_parent(*this);
    panels_.push_back(clip);
    labels_.push_back(label);
    rooms_.push_back(0);
    subscriptions_.push_back(panel.Text.Changed.Connect([this, i, label, &panel, said = std::string()]() mutable {
        label->set_text(OneLine(panel.Text()));
        // The dots that tell that something goes on are for the eye.
        const std::string words = WithoutDots(panel.Text());
        if (words != said) Announce(*label, label->get_text());
        said = words;
        Fit(i);
    }));
    subscriptions_.push_back(panel.Width.Changed.Connect([this] { queue_allocate(); }));
}

void StatusBarView::Fit(int i)
{
    if (i == 1) return;
    const auto at = static_cast<std::size_t>(i - 1);
    FitCaption(*labels_[at], rooms_[at] - kPanelInset, kLineHeight);
}

void StatusBarView::size_allocate_vfunc(int width, int height, int)
{
    Twips edge = 0;
    for (int i = 1; i <= control_.PanelCount(); ++i) {
        const int left = Edge(edge);
        edge += control_.Panels(i).Width();
        // Panels may reach beyond the bar; what is outside is cut off, so that texts end in time.
        const int room = std::max(0, std::min(Edge(edge), width) - left);
        const auto at = static_cast<std::size_t>(i - 1);
        if (std::exchange(rooms_[at], room) != room) Fit(i);
        PutAt(*panels_[at], {left, 0, room, height});
    }
}

}  // namespace velmora
