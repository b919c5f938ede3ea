#include "platform/desktop/NoticeBar.h"

#include <algorithm>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/DisplayText.h"

namespace velmora {

namespace {

constexpr int kGap = 6;
constexpr int kMostLines = 2;
/// A long text must not make the window wider; where there is room it takes more.
constexpr int kNaturalWidth = 60;
constexpr std::size_t kMostTexts = 20;

}  // namespace

NoticeBar::NoticeBar() : Gtk::Box(Gtk::Orientation::HORIZONTAL, kGap), close_("Close")
{
    SetAccessibleRole(*this, Gtk::Accessible::Role::ALERT);
    set_name("Notice");
    add_css_class("notice");
    text_.set_name("lblNotice");
    text_.set_xalign(0);
    text_.set_hexpand(true);
    text_.set_wrap(true);
    text_.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    text_.set_lines(kMostLines);
    text_.set_ellipsize(Pango::EllipsizeMode::END);
    text_.set_max_width_chars(kNaturalWidth);
    close_.set_name("cmdNoticeClose");
    close_.add_css_class("command");
    close_.set_valign(Gtk::Align::CENTER);
    close_.set_focus_on_click(false);
    close_.signal_clicked().connect([this] { TakeAway(); });
    append(text_);
    SetAccessibleName(waiting_, {});
    append(waiting_);
    append(close_);
    set_visible(false);
}

void NoticeBar::Add(const std::string& text)
{
    const bool isThere = std::find(texts_.begin(), texts_.end(), text) != texts_.end();
    if (isThere || texts_.size() == kMostTexts) return;
    texts_.push_back(text);
    ShowFirst();
}

void NoticeBar::ShowFirst()
{
    const Glib::ustring text = OneLine(texts_.front());
    text_.set_text(text);
    SetAccessibleName(*this, text);
    text_.set_tooltip_text(text);
    const std::size_t more = texts_.size() - 1;
    waiting_.set_text(more > 0 ? std::to_string(more) + " more" : "");
    set_visible(true);
    Announce(*this, text);
}

void NoticeBar::TakeAway()
{
    texts_.pop_front();
    if (!texts_.empty()) {
        ShowFirst();
        return;
    }
    if (Emptied) Emptied();
    set_visible(false);
}

}  // namespace velmora
