// The program with a page in it, for measuring.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "program/Program.h"
#include "tests/support/WebServer.h"

namespace velmora::bench {

/// Answers every question with No or Cancel at once, and notes when it was asked.
class SilentDialogs : public Dialogs {
public:
    explicit SilentDialogs(Desktop& desktop) : desktop_(desktop) {}

    Answer MsgBox(const std::string&, Buttons buttons, Icon, const std::string&) override
    {
        asked = Clock::now();
        return SafeAnswer(buttons);
    }
    void Tell(const std::string&) override {}
    void ShowModal(velmora::Window&) override {}
    void DoEvents() override { desktop_.DoEvents(); }
    Twips ScreenWidth() override { return desktop_.ScreenWidth(); }
    Twips ScreenHeight() override { return desktop_.ScreenHeight(); }
    void EndProgram() override {}

    Clock::time_point asked;

private:
    Desktop& desktop_;
};

/// Lets events run until the condition holds; throws std::runtime_error after half a minute.
void RunUntil(const std::function<bool()>& condition);

class BenchPage {
public:
    BenchPage();

    frmBrowser& Form() { return program_.Form(); }
    SilentDialogs& Questions() { return dialogs_; }
    WebKitWebView* View() { return program_.Engine().View(); }
    test::WebServer& Server() { return server_; }

    /// Loads a page by Go, which may lead on to another. Gives the time from the arrival of the event
    /// DocumentComplete to the end of the program's handler.
    std::chrono::duration<double> Load(const std::string& path) { return Load(path, path); }
    std::chrono::duration<double> Load(const std::string& path, const std::string& last);

    /// Draws the window anew and lets events run until that is on the screen.
    void AwaitPicture();

    /// The number that a script of the page's own gives.
    double Script(const std::string& script);

private:
    static gboolean NoteArrival(GSignalInvocationHint*, guint, const GValue* values, gpointer self);
    Desktop desktop_;
    SilentDialogs dialogs_{desktop_};
    std::string folder_;
    test::WebServer server_;
    Program program_;
    Clock::time_point arrived_;
    std::function<void(const std::string& url)> completed_;
};

/// A new folder for records; throws std::runtime_error if there can be none.
std::string NewFolder();

/// The one program of all benchmarks; made at the first call.
BenchPage& ThePage();

}  // namespace velmora::bench
