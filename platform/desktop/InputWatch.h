// What the user's hands do just now, so that a message box that opens under them is not answered by
// a key or a press that was meant for what stood there before.
#pragma once

#include <chrono>
#include <functional>
#include <map>

#include <gtkmm/window.h>

namespace velmora {

class InputWatch {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Notes the keys and presses that go to a window, before it gets them. The window must not outlive this.
    void Observe(Gtk::Window& window);
    /// The user has chosen something of the program's own: what opens next is an answer to that.
    void NoteChoice() { lastTyped_ = {}; }

    /// Keeps from a box that is about to open: a key that is held down until it is let go, and, if the
    /// user was typing, all keys and presses for half a second.
    void Protect(Gtk::Window& box);

    std::function<Time()> Now = std::chrono::steady_clock::now;

private:
    void NoteKey(const Gtk::Window& window, guint key, guint code);
    /// True for the repetition of a key that went down somewhere else.
    bool IsHeld(guint code);

    std::map<guint, Time> down_;  ///< When each key that is down was last seen.
    Time lastTyped_;              ///< The last key; none if it chose something.
};

}  // namespace velmora
