#include "platform/desktop/ClientArea.h"

#include <algorithm>

#include <gtk/gtk.h>

#include "platform/desktop/Pixels.h"
#include "platform/desktop/ViewBuilder.h"

namespace velmora {
namespace {

using FocusFunction = gboolean (*)(GtkWidget*, GtkDirectionType);

FocusFunction ParentFocus(GtkWidget* widget)
{
    return GTK_WIDGET_CLASS(g_type_class_peek_parent(G_OBJECT_GET_CLASS(widget)))->focus;
}

gboolean OnFocus(GtkWidget* widget, GtkDirectionType direction)
{
    const bool isTab = direction == GTK_DIR_TAB_FORWARD || direction == GTK_DIR_TAB_BACKWARD;
    auto* area = dynamic_cast<ClientArea*>(Glib::wrap(widget));
    if (!area || !isTab) return ParentFocus(widget)(widget, direction);
    return area->MoveFocus(static_cast<Gtk::DirectionType>(direction));
}

void OnClassInit(void* widgetClass, void*) { GTK_WIDGET_CLASS(widgetClass)->focus = OnFocus; }

}  // namespace

FocusChain::FocusChain() : Glib::ExtraClassInit(OnClassInit) {}

ClientArea::ClientArea(Window& window, ViewContext& context, bool isFixed)
    : Glib::ObjectBase("velmora_ClientArea"), ControlArea(context), naturalWidth_(Edge(window.ScaleWidth())),
      naturalHeight_(Edge(window.ScaleHeight())), isFixed_(isFixed)
{
    for (const Control* control : window.Controls) {
        if (dynamic_cast<const StatusBar*>(control)) statusBar_ = control;
    }
    ViewBuilder(*this, context).Build(window);
}

bool ClientArea::MoveFocus(Gtk::DirectionType direction)
{
    std::vector<FocusStop> order = context_.TabOrder();
    if (direction == Gtk::DirectionType::TAB_BACKWARD) std::reverse(order.begin(), order.end());
    auto next = order.begin();
    for (auto stop = order.begin(); stop != order.end(); ++stop) {
        if (!stop->HoldsFocus()) continue;
        if (stop->keepsTab && stop->widget->child_focus(direction)) return true;
        next = stop + 1;
        break;
    }
    return std::any_of(next, order.end(), [direction](const FocusStop& stop) { return stop.Enter(direction); });
}

Gdk::Rectangle ClientArea::Place(const Control& control) const
{
    Gdk::Rectangle place = ControlArea::Place(control);
    if (!statusBar_) return place;
    const int height = Edge(statusBar_->Height());
    const int top = height_ - height;
    if (&control == statusBar_) return {0, top, width_, height};
    // What reaches below the status bar's upper edge ends there, so that nothing of it is covered.
    place.set_height(std::clamp(top - place.get_y(), 0, place.get_height()));
    return place;
}

void ClientArea::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural, int& minimumBaseline,
                               int& naturalBaseline) const
{
    natural = orientation == Gtk::Orientation::HORIZONTAL ? naturalWidth_ : naturalHeight_;
    minimum = isFixed_ ? natural : 0;
    minimumBaseline = naturalBaseline = -1;
}

void ClientArea::size_allocate_vfunc(int width, int height, int baseline)
{
    if (width != width_ || height != height_) {
        width_ = width;
        height_ = height;
        context_.allocating = true;
        if (Resized) Resized(width, height);
        context_.allocating = false;
    }
    ControlArea::size_allocate_vfunc(width, height, baseline);
}

}  // namespace velmora
