#include "platform/desktop/StartWindow.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Desktop.h"

namespace velmora {

namespace {

constexpr int kWidth = 320;  // Sizes in pixels.
constexpr int kMargin = 24;
constexpr int kGap = 12;
constexpr unsigned kPatience = 1000;  // In milliseconds.
constexpr unsigned kPause = 50;       // Between two movements of the bar.

}  // namespace

StartWindow::StartWindow(const Desktop& desktop) : desktop_(desktop)
{
    set_title("Velmora");
    set_resizable(false);
    // The start goes on in any case, and the program can be closed when it is there.
    set_deletable(false);
    signal_close_request().connect([] { return true; }, false);
    auto* const box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kGap);
    box->set_margin(kMargin);
    box->set_size_request(kWidth);
    auto* const text = Gtk::make_managed<Gtk::Label>("Velmora reads your records.");
    box->append(*text);
    SetAccessibleName(bar_, text->get_text());
    box->append(bar_);
    set_child(*box);
    const auto begin = [this] {
        Glib::signal_timeout().connect(sigc::mem_fun(*this, &StartWindow::Move), kPause);
        return false;
    };
    Glib::signal_timeout().connect(sigc::track_obj(begin, *this), kPatience);
}

bool StartWindow::Move()
{
    if (!get_visible() && !desktop_.IsDialogOpen()) present();
    bar_.pulse();
    return true;
}

}  // namespace velmora
