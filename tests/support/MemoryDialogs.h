// Message boxes and dialogs that a script answers.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/Dialogs.h"

namespace velmora::test {

class MemoryDialogs : public Dialogs {
public:
    Answer MsgBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title) override;
    void Tell(const std::string& text) override { Shown.push_back("tell: " + text); }
    void ShowModal(Window& dialog) override;
    void DoEvents() override;
    Twips ScreenWidth() override { return 15360; }
    Twips ScreenHeight() override { return 11520; }
    void EndProgram() override { Ended = true; }

    /// The answers to come, in order. A box with nothing but OK takes none. A question without an
    /// answer gets the safe one.
    std::deque<Answer> Answers;
    /// What the user does in the dialogs to come, in order; a dialog that it leaves open, or that
    /// comes without any, is closed at its close box.
    std::deque<std::function<void(Window&)>> Visits;
    std::function<void()> PendingEvents;  ///< What DoEvents lets in.

    /// What was shown, in order: "[title] text (YesNo)", "[title] text (!)" with an icon, "dialog caption" and
    /// whether it did not stand in the middle of the screen, "tell: text".
    std::vector<std::string> Shown;
    int Unanswered = 0;  ///< Questions that got the safe answer.
    int EventRounds = 0;
    bool Ended = false;
};

}  // namespace velmora::test
