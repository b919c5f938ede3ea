#include "platform/webkit/chrome/PageArea.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "platform/glib/Callbacks.h"
#include "platform/webkit/chrome/FindBar.h"

namespace velmora {

namespace {

constexpr std::array kZoomLevels{0.3, 0.5, 0.67, 0.8, 0.9, 1.0, 1.1, 1.2, 1.33, 1.5, 1.7, 2.0, 2.4, 3.0};
constexpr double kHair = 0.001;

void Enlarge(WebKitWebView* view)
{
    const double now = webkit_web_view_get_zoom_level(view);
    const auto* next = std::upper_bound(kZoomLevels.begin(), kZoomLevels.end(), now + kHair);
    if (next != kZoomLevels.end()) webkit_web_view_set_zoom_level(view, *next);
}

void Reduce(WebKitWebView* view)
{
    const double now = webkit_web_view_get_zoom_level(view);
    const auto* next = std::lower_bound(kZoomLevels.begin(), kZoomLevels.end(), now - kHair);
    if (next != kZoomLevels.begin()) webkit_web_view_set_zoom_level(view, *std::prev(next));
}

/// The keys of one view; lives as long as the box.
struct PageKeys {
    explicit PageKeys(WebKitWebView* of) : view(of), find(of) {}

    void Watch(GtkWidget* box)
    {
        GtkEventController* keys = gtk_event_controller_key_new();
        callbacks.Connect(keys, "key-pressed", [this](GtkEventController*, guint key, guint, GdkModifierType state) {
            return Press(key, state);
        });
        gtk_widget_add_controller(box, keys);
        // Before the page, which would scroll.
        GtkEventController* wheel = gtk_event_controller_scroll_new(static_cast<GtkEventControllerScrollFlags>(
            GTK_EVENT_CONTROLLER_SCROLL_VERTICAL | GTK_EVENT_CONTROLLER_SCROLL_DISCRETE));
        gtk_event_controller_set_propagation_phase(wheel, GTK_PHASE_CAPTURE);
        callbacks.Connect(wheel, "scroll", [this](GtkEventController* from, double, double down) {
            if (!(gtk_event_controller_get_current_event_state(from) & GDK_CONTROL_MASK)) return false;
            if (down < 0) Enlarge(view);
            if (down > 0) Reduce(view);
            return true;
        });
        gtk_widget_add_controller(box, wheel);
    }

    bool WithControl(guint key)
    {
        switch (key) {
        case GDK_KEY_f:
        case GDK_KEY_F: find.Open(); return true;
        case GDK_KEY_plus:
        case GDK_KEY_equal:
        case GDK_KEY_KP_Add: Enlarge(view); return true;
        case GDK_KEY_minus:
        case GDK_KEY_KP_Subtract: Reduce(view); return true;
        case GDK_KEY_0:
        case GDK_KEY_KP_0: webkit_web_view_set_zoom_level(view, 1.0); return true;
        default: return false;
        }
    }

    bool Press(guint key, GdkModifierType state)
    {
        isTabUnused = key == GDK_KEY_Tab || key == GDK_KEY_ISO_Left_Tab || key == GDK_KEY_KP_Tab;
        if (state & GDK_ALT_MASK) return false;
        if (state & GDK_CONTROL_MASK) return WithControl(key);
        if (key == GDK_KEY_F3) {
            find.Step(!(state & GDK_SHIFT_MASK));
            return true;
        }
        if (key != GDK_KEY_Escape || !find.IsOpen()) return false;
        find.Close();
        return true;
    }

    WebKitWebView* view;
    FindBar find;
    bool isTabUnused = false;  ///< The page has left a Tab key to the window, which moves the focus now.
    Callbacks callbacks;
};

constexpr char kKeys[] = "velmora-keys";

bool HoldsFocus(GtkWidget* widget)
{
    GtkRoot* root = gtk_widget_get_root(widget);
    GtkWidget* focus = root ? gtk_root_get_focus(root) : nullptr;
    return focus && (focus == widget || gtk_widget_is_ancestor(focus, widget));
}

/// The box of a page's alert, prompt or sign-in, which the view holds in itself; null if there is none.
GtkWidget* BoxInView(GtkWidget* view)
{
    GtkWidget* child = gtk_widget_get_first_child(view);
    // The helper of the input methods is always there. Nothing is to be seen of it, and Tab is a
    // character to it: the focus must never come to it.
    while (child && GTK_IS_TEXT_VIEW(child)) child = gtk_widget_get_next_sibling(child);
    return child;
}

/// Whether a page that has reached its end, and asks to move the focus, leaves the key to the window as well.
bool LeavesTabKey() { return webkit_get_major_version() == 2 && webkit_get_minor_version() < 52; }

/// Gives the focus to the view or, if it has it already, to the next place in it; false at its end.
gboolean FocusView(PageKeys& keys, GtkDirectionType direction)
{
    auto* view = GTK_WIDGET(keys.view);
    GtkWidget* box = BoxInView(view);
    if (box && gtk_widget_child_focus(box, direction)) return TRUE;
    if (!HoldsFocus(view)) return gtk_widget_grab_focus(view);
    // With such a key the window asks for the same. One of the two must do: the key, which comes last.
    return !box && LeavesTabKey() && !std::exchange(keys.isTabUnused, false);
}

/// Tab goes through the page, then through the find row, then on.
gboolean OnFocus(GtkWidget* box, GtkDirectionType direction)
{
    auto& keys = *static_cast<PageKeys*>(g_object_get_data(G_OBJECT(box), kKeys));
    GtkWidget* findRow = keys.find.Widget();
    if (direction == GTK_DIR_TAB_FORWARD) {
        const bool isPast = HoldsFocus(findRow);
        return (!isPast && FocusView(keys, direction)) || gtk_widget_child_focus(findRow, direction);
    }
    const bool isPast = HoldsFocus(GTK_WIDGET(keys.view));
    return (!isPast && gtk_widget_child_focus(findRow, direction)) || FocusView(keys, direction);
}

/// A box that hands the focus on to its first child; a plain one would not take it.
GType AreaType()
{
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_BOX, "VelmoraPageArea", sizeof(GtkBoxClass),
        [](gpointer type_class, gpointer) {
            auto* widgetClass = static_cast<GtkWidgetClass*>(type_class);
            widgetClass->focus = OnFocus;
            widgetClass->grab_focus = [](GtkWidget* box) {
                return gtk_widget_grab_focus(gtk_widget_get_first_child(box));
            };
        },
        sizeof(GtkBox), nullptr, GTypeFlags(0));
    return type;
}

/// The engine keeps a text view of its own in the page's, to know the keys for editing by: nothing to read.
void HideInside(WebKitWebView* view)
{
    for (GtkWidget* part = gtk_widget_get_first_child(GTK_WIDGET(view)); part;
         part = gtk_widget_get_next_sibling(part)) {
        g_object_set(part, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr);
    }
}

}  // namespace

GtkWidget* NewPageArea(WebKitWebView* view)
{
    auto* box = GTK_WIDGET(g_object_new(AreaType(), "orientation", GTK_ORIENTATION_VERTICAL, nullptr));
    auto* keys = new PageKeys(view);
    g_object_set_data_full(G_OBJECT(box), kKeys, keys, [](gpointer data) { delete static_cast<PageKeys*>(data); });
    gtk_widget_set_vexpand(GTK_WIDGET(view), TRUE);
    gtk_widget_set_hexpand(GTK_WIDGET(view), TRUE);
    gtk_accessible_update_property(GTK_ACCESSIBLE(view), GTK_ACCESSIBLE_PROPERTY_LABEL, "Web page", -1);
    HideInside(view);
    gtk_box_append(GTK_BOX(box), GTK_WIDGET(view));
    gtk_box_append(GTK_BOX(box), keys->find.Widget());
    keys->Watch(box);
    return box;
}

}  // namespace velmora
