// A message box.
#pragma once

#include <functional>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/window.h>

#include "platform/Dialogs.h"

namespace velmora {

class MessageBox : public Gtk::Window {
public:
    /// `screen` is the size of the screen in pixels, which the box never outgrows.
    MessageBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title,
               const Gdk::Rectangle& screen);

    /// Called with the answer, once for each button that is pressed.
    std::function<void(Answer)> Answered;

private:
    Gtk::Widget& MakeText(const std::string& text);
    Gtk::Widget& MakeShortText(const std::string& text);
    Gtk::Widget& MakeLongText(const std::string& text);
    /// What a title bar needs to show the title in full, as far as the screen has room.
    int WidthOfTitle(const std::string& title, const Gdk::Rectangle& screen);
    /// Settles the size of the text; only once it is in the window, whose type it takes.
    void FitText(const Gdk::Rectangle& screen);
    Gtk::Widget& MakeButtons(Buttons buttons);
    void AddButton(Gtk::Box& row, const char* name, const char* caption, Answer answer);
    void Give(Answer answer);
    void CloseOnEscape(Answer answer);

    Gtk::Label* label_ = nullptr;  ///< The text; null for a long one.
    Gtk::ScrolledWindow* scroller_ = nullptr;
};

}  // namespace velmora
