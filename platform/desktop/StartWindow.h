// A small window for a start that takes long: the program's own comes when all records have been read.
#pragma once

#include <gtkmm/progressbar.h>
#include <gtkmm/window.h>

namespace velmora {

class Desktop;

/// Is on the screen from the first time that events are let in after a second, until it is destroyed. It does
/// not come in front of a question.
class StartWindow : public Gtk::Window {
public:
    explicit StartWindow(const Desktop& desktop);

private:
    /// Called again and again.
    bool Move();

    const Desktop& desktop_;
    Gtk::ProgressBar bar_;
};

}  // namespace velmora
