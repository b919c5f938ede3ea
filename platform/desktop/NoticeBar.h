// Lines of news in a window that hold nothing up.
#pragma once

#include <deque>
#include <functional>
#include <string>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>

namespace velmora {

/// A row with one text at a time, the oldest, and a button that takes it away and brings the next.
/// Without a text it is hidden.
class NoticeBar : public Gtk::Box {
public:
    NoticeBar();

    /// Shows the text, as plain text, when those before it have been taken away; nothing if it is there
    /// already. Of very many texts the later ones are dropped.
    void Add(const std::string& text);

    /// Called before the row is hidden.
    std::function<void()> Emptied;

private:
    void ShowFirst();
    void TakeAway();

    std::deque<std::string> texts_;
    Gtk::Label text_;
    Gtk::Label waiting_;
    Gtk::Button close_;
};

}  // namespace velmora
