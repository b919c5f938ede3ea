#include "platform/desktop/MessageBox.h"

#include <algorithm>

#include <gtkmm/button.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/image.h>
#include <gtkmm/textview.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/DisplayText.h"

namespace velmora {
namespace {

constexpr int kWidestText = 480;
constexpr int kGap = 12;
constexpr std::size_t kLongestInLabel = 2000;  // In bytes.

const char* IconName(Icon icon)
{
    return icon == Icon::Information ? "dialog-information-symbolic" : "dialog-warning-symbolic";
}

}  // namespace

MessageBox::MessageBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title,
                       const Gdk::Rectangle& screen)
{
    SetAccessibleRole(*this, Gtk::Accessible::Role::ALERT_DIALOG);
    set_title(OneLine(title));
    set_name("MsgBox");
    set_resizable(false);
    add_css_class("velmora");
    add_css_class("message");

    auto* message = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap);
    if (icon != Icon::None) {
        auto* image = Gtk::make_managed<Gtk::Image>();
        image->set_from_icon_name(IconName(icon));
        image->set_pixel_size(32);
        image->set_valign(Gtk::Align::START);
        HideFromReaders(*image);
        message->append(*image);
    }
    message->append(MakeText(text));

    auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kGap);
    content->set_margin(kGap);
    content->set_size_request(WidthOfTitle(title, screen), -1);
    content->append(*message);
    content->append(MakeButtons(buttons));
    set_child(*content);
    if (Gtk::Widget* const chosen = get_default_widget()) set_focus(*chosen);
    FitText(screen);
    CloseOnEscape(SafeAnswer(buttons));
}

int MessageBox::WidthOfTitle(const std::string& title, const Gdk::Rectangle& screen)
{
    // The title bar's own type is not known; it stands in bold, beside the window's buttons.
    constexpr int kTitleButtons = 140;
    int width = 0, height = 0;
    auto layout = create_pango_layout(OneLine(title));
    layout->get_pixel_size(width, height);
    return std::min(width * 5 / 4 + kTitleButtons, screen.get_width() / 2);
}

Gtk::Widget& MessageBox::MakeText(const std::string& text)
{
    auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_overlay_scrolling(false);
    HideScrollBars(*scroller);
    scroller->set_hexpand(true);
    scroller->set_valign(Gtk::Align::CENTER);  // One line stands beside the middle of the icon.
    scroller->set_propagate_natural_width(true);
    const bool isLong = text.size() > kLongestInLabel;
    scroller->set_child(isLong ? MakeLongText(text) : MakeShortText(text));
    scroller_ = scroller;
    return *scroller;
}

Gtk::Widget& MessageBox::MakeShortText(const std::string& text)
{
    label_ = Gtk::make_managed<Gtk::Label>(DisplayText(text));
    label_->set_name("lblText");
    label_->set_wrap(true);
    label_->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    label_->set_xalign(0);
    label_->set_yalign(0);
    return *label_;
}

Gtk::Widget& MessageBox::MakeLongText(const std::string& text)
{
    // A label measures its text again and again, which takes it minutes here.
    auto* view = Gtk::make_managed<Gtk::TextView>();
    view->set_name("lblText");
    SetAccessibleName(*view, "Message");
    view->set_editable(false);
    view->set_cursor_visible(false);
    view->set_focusable(false);
    view->set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    view->get_buffer()->set_text(DisplayText(text));
    return *view;
}

void MessageBox::FitText(const Gdk::Rectangle& screen)
{
    const int widest = std::min(kWidestText, screen.get_width() / 2);
    const int highest = screen.get_height() / 2;
    if (!label_) {
        scroller_->set_size_request(widest, highest);
        return;
    }
    // The size is settled here: asked for its height by a scroller, a wrapping label gives that of its
    // narrowest form.
    auto layout = label_->create_pango_layout(label_->get_text());
    layout->set_width(widest * Pango::SCALE);
    layout->set_wrap(Pango::WrapMode::WORD_CHAR);
    int width = 0, height = 0;
    layout->get_pixel_size(width, height);
    label_->set_size_request(width + 1, -1);
    scroller_->set_min_content_height(std::min(height, highest));
}

Gtk::Widget& MessageBox::MakeButtons(Buttons buttons)
{
    auto* row = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kGap / 2);
    row->set_halign(Gtk::Align::CENTER);
    row->set_homogeneous(true);
    if (buttons == Buttons::Ok || buttons == Buttons::OkCancel) {
        AddButton(*row, "btnOk", "OK", Answer::Ok);
        if (buttons == Buttons::OkCancel) AddButton(*row, "btnCancel", "Cancel", Answer::Cancel);
    } else {
        AddButton(*row, "btnYes", "Yes", Answer::Yes);
        AddButton(*row, "btnNo", "No", Answer::No);
    }
    Gtk::Widget& chosen = buttons == Buttons::CautiousYesNo ? *row->get_last_child() : *row->get_first_child();
    set_default_widget(chosen);
    return *row;
}

void MessageBox::AddButton(Gtk::Box& row, const char* name, const char* caption, Answer answer)
{
    auto* button = Gtk::make_managed<Gtk::Button>(caption);
    button->set_name(name);
    button->signal_clicked().connect([this, answer] { Give(answer); });
    row.append(*button);
}

void MessageBox::Give(Answer answer)
{
    if (Answered) Answered(answer);
}

void MessageBox::CloseOnEscape(Answer answer)
{
    const auto give = [this, answer] {
        Give(answer);
        return true;
    };
    signal_close_request().connect(give, false);
    auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [give](guint key, guint, Gdk::ModifierType) { return key == GDK_KEY_Escape && give(); }, false);
    add_controller(keys);
}

}  // namespace velmora
