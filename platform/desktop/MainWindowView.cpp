#include "platform/desktop/MainWindowView.h"

#include <gdkmm/toplevel.h>
#include <glibmm/main.h>
#include <gtkmm/box.h>

#include "platform/desktop/ClientArea.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

MainWindowView::MainWindowView(velmora::Window& window, Desktop& desktop,
                               std::function<Gtk::Widget*(WebBrowser&)> browserWidget)
    : window_(window), desktop_(desktop), menu_(window.Menu), place_(surface_, window)
{
    context_.browserWidget = std::move(browserWidget);
    auto* area = Gtk::make_managed<ClientArea>(window, context_, false);
    area->set_expand(true);
    area->Resized = [this](int width, int height) { OnResized(width, height); };

    auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    auto* menuBar = Gtk::make_managed<Clip>(menu_.Bar(), true);
    menuBar->set_visible(!window.Menu.empty());
    content->append(*menuBar);
    content->append(notices_);
    notices_.Emptied = [this] {
        if (lastFocus_ && HoldsFocus(notices_)) context_.MoveFocus(*lastFocus_);
    };
    content->append(*area);
    surface_.insert_action_group("menu", menu_.Actions());
    surface_.add_css_class("velmora");
    surface_.set_title(OneLine(window.Caption()));
    surface_.set_child(*content);
    menu_.Describe();
    if (context_.defaultButton) surface_.set_default_widget(*context_.defaultButton);

    caption_ = window.Caption.Changed.Connect([this] { surface_.set_title(OneLine(window_.Caption())); });
    const auto close = [this] {
        OnCloseBox();
        return true;
    };
    surface_.signal_close_request().connect(close, false);
    menu_.Chosen = [this] {
        desktop_.Input().NoteChoice();
        LeaveMenu();
    };
    desktop_.Input().Observe(surface_);
    WatchCloseBox();
    surface_.property_focus_widget().signal_changed().connect([this] { NoteFocus(); });
    surface_.signal_realize().connect([this] { WatchMinimised(); });
    desktop_.SetMainWindow(&surface_, [this](const std::string& text) { notices_.Add(text); });
}

MainWindowView::~MainWindowView()
{
    leaveMenu_.disconnect();
    closeLater_.disconnect();
    g_signal_remove_emission_hook(g_signal_lookup("event", GDK_TYPE_SURFACE), closeHook_);
    desktop_.SetMainWindow(nullptr);
}

void MainWindowView::Show()
{
    window_.Visible = true;
    place_.FitHeight();
    surface_.present();
}

void MainWindowView::OnCloseBox()
{
    if (isLeaving_) {
        desktop_.PresentForemost();  // its question is there already
        return;
    }
    desktop_.CloseAllThen([this] {
        isLeaving_ = true;
        window_.CloseRequested.Raise();
        isLeaving_ = false;
    });
}

void MainWindowView::WatchCloseBox()
{
    const auto look = [](GSignalInvocationHint*, guint, const GValue* values, gpointer data) -> gboolean {
        auto& view = *static_cast<MainWindowView*>(data);
        auto* surface = static_cast<GdkSurface*>(g_value_get_object(values));
        auto* event = static_cast<GdkEvent*>(g_value_peek_pointer(values + 1));
        if (gdk_event_get_event_type(event) != GDK_DELETE || !view.desktop_.IsDialogOpen()) return TRUE;
        if (surface != gtk_native_get_surface(GTK_NATIVE(view.surface_.gobj()))) return TRUE;
        const auto close = [&view] {
            view.OnCloseBox();
            return false;
        };
        view.closeLater_ = Glib::signal_idle().connect(close);
        return TRUE;
    };
    closeHook_ = g_signal_add_emission_hook(g_signal_lookup("event", GDK_TYPE_SURFACE), 0, look, this, nullptr);
}

void MainWindowView::OnResized(int width, int height)
{
    width_ = width;
    height_ = height;
    if (isMinimised_) return;
    window_.SetInnerSize(static_cast<Twips>(width) * kTwipsPerPixel, static_cast<Twips>(height) * kTwipsPerPixel);
    window_.Resize.Raise();
}

void MainWindowView::NoteFocus()
{
    for (const FocusStop& stop : context_.stops) {
        if (stop.HoldsFocus()) lastFocus_ = stop.widget;
    }
}

void MainWindowView::LeaveMenu()
{
    leaveMenu_.disconnect();
    const auto leave = [this] {
        if (lastFocus_ && HoldsFocus(menu_.Bar())) context_.MoveFocus(*lastFocus_);
        return false;
    };
    // The menu closes first, and takes the focus to its bar as it does so.
    leaveMenu_ = Glib::signal_idle().connect(leave);
}

void MainWindowView::WatchMinimised()
{
    const auto toplevel = std::dynamic_pointer_cast<Gdk::Toplevel>(surface_.get_surface());
    if (!toplevel) return;
    // A plain pointer: the surface must not be kept alive by its own signal.
    auto* const watched = toplevel.get();
    watched->property_state().signal_changed().connect([this, watched] {
        const auto state = watched->property_state().get_value();
        const bool isMinimised = (state & Gdk::Toplevel::State::MINIMIZED) == Gdk::Toplevel::State::MINIMIZED;
        if (isMinimised == isMinimised_) return;
        isMinimised_ = isMinimised;
        if (!isMinimised) {
            OnResized(width_, height_);
            return;
        }
        window_.SetInnerSize(0, 0);
        window_.Resize.Raise();
    });
}

}  // namespace velmora
