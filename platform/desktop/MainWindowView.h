// The main window on the screen.
#pragma once

#include <functional>
#include <memory>

#include <gtkmm/window.h>

#include "platform/controls/WebBrowser.h"
#include "platform/desktop/Desktop.h"
#include "platform/desktop/MenuView.h"
#include "platform/desktop/NoticeBar.h"
#include "platform/desktop/ViewContext.h"
#include "platform/desktop/WindowPlace.h"

namespace velmora {

class MainWindowView {
public:
    /// Makes the menu bar and the views of all controls; nothing is seen before Show. `browserWidget`
    /// gives the widget, a managed one, of a browser control, or null for an empty place. `window` and
    /// `desktop` must outlive this.
    MainWindowView(velmora::Window& window, Desktop& desktop, std::function<Gtk::Widget*(WebBrowser&)> browserWidget);
    ~MainWindowView();

    /// Makes the window visible, its inner size as the window's ScaleWidth and ScaleHeight say. From
    /// then on the window's measures follow the screen, and Resize tells of every change.
    void Show();

    Gtk::Window& Surface() { return surface_; }

private:
    /// The user wants the program closed, whatever is open.
    void OnCloseBox();
    /// The toolkit keeps the close box from a window that a box or a dialog stands in front of: it is
    /// looked for among all events.
    void WatchCloseBox();
    void OnResized(int width, int height);
    void WatchMinimised();
    /// Remembers which control has the focus, as long as one has it.
    void NoteFocus();
    /// Gives the focus back to the control that had it before the menu did.
    void LeaveMenu();

    velmora::Window& window_;
    Desktop& desktop_;
    ViewContext context_;
    MenuView menu_;
    NoticeBar notices_;
    Gtk::Window surface_;
    WindowPlace place_;
    Subscription caption_;
    Gtk::Widget* lastFocus_ = nullptr;  ///< What takes that control's focus; null before the first.
    sigc::connection leaveMenu_, closeLater_;
    int width_ = 0;  ///< Inner size in pixels, also while minimised.
    int height_ = 0;
    bool isMinimised_ = false;
    bool isLeaving_ = false;  ///< CloseRequested is being handled.
    gulong closeHook_ = 0;
};

}  // namespace velmora
