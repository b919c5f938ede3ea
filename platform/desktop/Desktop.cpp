#include "platform/desktop/Desktop.h"

#include <algorithm>
#include <clocale>
#include <stdexcept>
#include <utility>

#include <gdkmm/display.h>
#include <gtk/gtk.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/icontheme.h>
#include <gtkmm/init.h>
#include <gtkmm/settings.h>
#include <gtkmm/stylecontext.h>
#include <pangomm/fontdescription.h>

#include "desktop_files.h"
#include "platform/desktop/DialogView.h"
#include "platform/desktop/MessageBox.h"
#include "platform/desktop/Monitors.h"
#include "platform/desktop/Pixels.h"

namespace velmora {
namespace {

void AddStyle(const std::string& rules, guint priority)
{
    auto style = Gtk::CssProvider::create();
    style->load_from_data(rules);
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), style, priority);
}

/// How much larger than usual the letters are that the user has chosen for the desktop. No smaller ones, since ours
/// are small already, and none that would not fit the controls' places.
double LargerType()
{
    constexpr double kUsualPoints = 11, kLargest = 1.5;
    const Pango::FontDescription font(Gtk::Settings::get_default()->property_gtk_font_name().get_value());
    const double points = font.get_size_is_absolute() ? 0 : static_cast<double>(font.get_size()) / Pango::SCALE;
    return std::clamp(points / kUsualPoints, 1.0, kLargest);
}

void LoadStyle()
{
    AddStyle(std::string(desktop_files::Find("velmora.css")), GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    constexpr int kTenths = 80;  // Of a point, as the style sheet has them.
    const int tenths = static_cast<int>(kTenths * LargerType());
    if (tenths == kTenths) return;
    const std::string points = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    AddStyle(".velmora, .velmora popover.menu contents { font-size: " + points + "pt; }",
             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
}

/// What waited for a handler that was held comes now, and may ask as well: so often nothing must come.
constexpr int kQuietRounds = 3;

}  // namespace

Desktop::Desktop()
{
    // By this name the desktop finds the program's entry in the menu, under Wayland its icon, too.
    g_set_prgname(VELMORA_ID);
    if (!gtk_init_check()) {
        throw std::runtime_error("Velmora needs a desktop to show its window on, and none can be reached.");
    }
    // The toolkit has taken over the user's locale; files and texts must not get its decimal comma.
    std::setlocale(LC_NUMERIC, "C");
    Gtk::init_gtkmm_internals();
    LoadStyle();
    Gtk::Window::set_default_icon_name(VELMORA_ID);
    loop_ = Glib::MainLoop::create();
}

void Desktop::FindIcons(const std::string& folder)
{
    Gtk::IconTheme::get_for_display(Gdk::Display::get_default())->add_search_path(folder);
}

int Desktop::Run()
{
    if (!hasEnded_) loop_->run();
    return 0;
}

Answer Desktop::MsgBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title)
{
    if (hasEnded_ || afterClosing_) {
        quietRounds_ = 0;
        return SafeAnswer(buttons);
    }
    const Answer answer = AskInBox(text, buttons, icon, title);
    GiveFocusBack();
    return answer;
}

Answer Desktop::AskInBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title)
{
    Answer answer = SafeAnswer(buttons);
    NestedLoop loop;
    MessageBox box(text, buttons, icon, title.empty() ? "Velmora" : title, Screen());
    box.Answered = [&](Answer given) {
        if (!loop.IsFinished()) answer = given;
        loop.Finish();
    };
    if (Gtk::Window* parent = Foremost()) box.set_transient_for(*parent);
    box.set_modal(true);
    input_.Protect(box);
    box.present();
    Hold({box, nullptr, loop});
    return answer;
}

void Desktop::Tell(const std::string& text)
{
    if (showLine_) {
        showLine_(text);
    } else {
        untold_.push_back(text);
    }
}

void Desktop::ShowModal(velmora::Window& dialog)
{
    if (hasEnded_) return;
    if (afterClosing_) {
        dialog.CloseRequested.Raise();
        return;
    }
    for (const OpenWindow& window : open_) {
        if (window.dialog != &dialog) continue;
        window.surface.present();
        return;
    }
    ShowUntilHidden(dialog);
    GiveFocusBack();
}

void Desktop::ShowUntilHidden(velmora::Window& dialog)
{
    NestedLoop loop;
    DialogView view(dialog);
    const Subscription hidden = dialog.Visible.Changed.Connect([&] {
        if (!dialog.Visible()) loop.Finish();
    });
    dialog.Visible = true;
    input_.Observe(view.Surface());
    view.Show(Foremost());
    Hold({view.Surface(), &dialog, loop});
    dialog.Visible = false;
}

void Desktop::DoEvents()
{
    // Events may bring new events for ever; what asked for this has its own work to go on with.
    constexpr int kMostEvents = 100;
    // To look whether there are any takes longer than reading a record does, and nobody sees so short a wait.
    constexpr std::chrono::milliseconds kPause{1};
    const auto now = std::chrono::steady_clock::now();
    if (now < nextEvents_) return;
    const auto context = Glib::MainContext::get_default();
    for (int i = 0; i < kMostEvents && !hasEnded_ && context->pending(); ++i) context->iteration(false);
    nextEvents_ = std::chrono::steady_clock::now() + kPause;
}

Twips Desktop::ScreenWidth() { return static_cast<Twips>(Screen().get_width()) * kTwipsPerPixel; }

Twips Desktop::ScreenHeight() { return static_cast<Twips>(Screen().get_height()) * kTwipsPerPixel; }

void Desktop::EndProgram()
{
    hasEnded_ = true;
    CloseAll();
    loop_->quit();
}

void Desktop::SetMainWindow(Gtk::Window* window, std::function<void(const std::string&)> showLine)
{
    mainWindow_ = window;
    showLine_ = std::move(showLine);
    if (!window) {
        closing_.disconnect();
        afterClosing_ = nullptr;
        CloseAll();
    }
    const auto waiting = std::exchange(untold_, {});
    for (const std::string& text : waiting) {
        if (showLine_) showLine_(text);
    }
}

Gdk::Rectangle Desktop::Screen() const
{
    Gdk::Rectangle place(0, 0, 1024, 768);
    if (const auto monitor = MonitorOf(Foremost())) monitor->get_geometry(place);
    return place;
}

Gtk::Window* Desktop::Foremost() const
{
    if (!open_.empty()) return &open_.back().surface;
    return mainWindow_ && mainWindow_->get_visible() ? mainWindow_ : nullptr;
}

void Desktop::Hold(const OpenWindow& window)
{
    open_.push_back(window);
    window.loop.Run();
    open_.pop_back();
}

void Desktop::GiveFocusBack()
{
    // When a dialog goes together with the box in front of it, the window manager finds nobody to give
    // the keyboard to.
    Gtk::Window* const next = hasEnded_ ? nullptr : Foremost();
    if (next && !next->is_active()) next->present();
}

void Desktop::PresentForemost()
{
    if (Gtk::Window* const window = Foremost()) window->present();
}

void Desktop::CloseAllThen(std::function<void()> then)
{
    const bool isClosing = static_cast<bool>(afterClosing_);
    afterClosing_ = std::move(then);
    if (isClosing) return;
    quietRounds_ = open_.empty() ? kQuietRounds : 0;
    CloseNext();
}

void Desktop::CloseNext()
{
    // One at a time, the foremost first: it holds a handler inside those of the others, which goes on
    // when its box is gone. With nothing open, a handler may still be letting events in.
    const bool isQuiet = open_.empty() && g_main_depth() <= 1;
    if (isQuiet && ++quietRounds_ > kQuietRounds) {
        const auto then = std::exchange(afterClosing_, nullptr);
        then();
        return;
    }
    if (!open_.empty()) {
        const OpenWindow foremost = open_.back();
        if (foremost.dialog) foremost.dialog->CloseRequested.Raise();
        foremost.loop.Finish();
    }
    constexpr unsigned kPause = 5;
    const auto next = [this] {
        CloseNext();
        return false;
    };
    closing_ = Glib::signal_timeout().connect(next, kPause);
}

void Desktop::CloseAll()
{
    for (const OpenWindow& window : open_) window.loop.Finish();
}

}  // namespace velmora
