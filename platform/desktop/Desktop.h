// The desktop that the program runs on: its main loop, message boxes, modal dialogs, the screen.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include <gtkmm/window.h>

#include "platform/Dialogs.h"
#include "platform/desktop/InputWatch.h"
#include "platform/desktop/NestedLoop.h"

namespace velmora {

class Desktop : public Dialogs {
public:
    /// Connects to the desktop. Throws std::runtime_error if there is none to show windows on.
    Desktop();

    /// Looks for the windows' icon in this folder as well as among the installed ones.
    void FindIcons(const std::string& folder);

    /// Handles events until EndProgram, and gives the program's exit code. Returns at once if the
    /// program was ended already.
    int Run();

    /// Handlers that wait for the user are held in a main loop of their own. Once the program has
    /// ended, a box gives its safe answer at once and a dialog is hidden again.
    Answer MsgBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title) override;
    /// Without a main window the text waits for one.
    void Tell(const std::string& text) override;
    /// Does nothing for a dialog that is open already, but brings it to the front.
    void ShowModal(velmora::Window& dialog) override;
    void DoEvents() override;
    Twips ScreenWidth() override;
    Twips ScreenHeight() override;
    void EndProgram() override;

    /// The window that boxes and dialogs belong to, and what shows a line in it. Null when it goes: what
    /// is open then is closed, boxes with their safe answer.
    void SetMainWindow(Gtk::Window* window, std::function<void(const std::string&)> showLine = {});
    /// Ends what is open, boxes with their safe answer and dialogs as by their close box, and calls
    /// `then` once all handlers that waited for it have returned. What they ask until then gets the safe
    /// answer at once, too.
    void CloseAllThen(std::function<void()> then);
    bool IsDialogOpen() const { return !open_.empty(); }
    /// Brings what is open to the front.
    void PresentForemost();
    InputWatch& Input() { return input_; }

private:
    struct OpenWindow {
        Gtk::Window& surface;
        velmora::Window* dialog;  ///< Null for a message box.
        NestedLoop& loop;
    };

    /// The place of the monitor on which a new window is to stand, in pixels.
    Gdk::Rectangle Screen() const;
    /// The window that a new box or dialog is to stand in front of; null if there is none to see.
    Gtk::Window* Foremost() const;
    void Hold(const OpenWindow& window);
    Answer AskInBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title);
    void ShowUntilHidden(velmora::Window& dialog);
    /// Brings the window forward that was behind the one that has just closed.
    void GiveFocusBack();
    void CloseAll();
    /// Closes the foremost of what is open, or ends the closing.
    void CloseNext();

    InputWatch input_;
    Glib::RefPtr<Glib::MainLoop> loop_;
    Gtk::Window* mainWindow_ = nullptr;
    std::function<void(const std::string&)> showLine_;
    std::vector<std::string> untold_;  ///< Lines that wait for a main window.
    std::vector<OpenWindow> open_;
    std::function<void()> afterClosing_;  ///< Set while everything is being closed.
    int quietRounds_ = 0;                 ///< Looks in a row, meanwhile, that found nothing open or asked.
    sigc::connection closing_;
    bool hasEnded_ = false;
    std::chrono::steady_clock::time_point nextEvents_;  ///< Before it no events are looked for.
};

}  // namespace velmora
