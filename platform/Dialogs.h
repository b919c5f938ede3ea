// Message boxes, modal dialogs and the message loop.
#pragma once

#include <string>

#include "platform/controls/Controls.h"

namespace velmora {

enum class Buttons {
    Ok,
    OkCancel,
    YesNo,
    CautiousYesNo,  ///< Enter, too, means No.
    YesNoYesIsSafe
};
enum class Icon { None, Information, Exclamation };
enum class Answer { Ok, Cancel, Yes, No };

/// What Escape and the close box of a message box stand for.
constexpr Answer SafeAnswer(Buttons buttons)
{
    switch (buttons) {
    case Buttons::YesNo:
    case Buttons::CautiousYesNo: return Answer::No;
    case Buttons::YesNoYesIsSafe: return Answer::Yes;
    case Buttons::OkCancel: return Answer::Cancel;
    default: return Answer::Ok;
    }
}

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Shows a message box and waits for the answer. The text is plain text. An empty title stands
    /// for the program's own. Escape and the close box give the safe answer.
    virtual Answer MsgBox(const std::string& text, Buttons buttons = Buttons::Ok, Icon icon = Icon::None,
                          const std::string& title = {}) = 0;

    /// Shows a line in the main window that holds nothing up; the user can take it away. The text is
    /// plain text. The same text is not shown twice while it stands.
    virtual void Tell(const std::string& text) = 0;

    /// Makes the dialog visible, modal to the main window, and waits until it is hidden.
    virtual void ShowModal(Window& dialog) = 0;

    /// Handles the events that are pending.
    virtual void DoEvents() = 0;

    /// The size of the screen in twips.
    virtual Twips ScreenWidth() = 0;
    virtual Twips ScreenHeight() = 0;

    /// Ends the program's message loop, with every dialog.
    virtual void EndProgram() = 0;
};

}  // namespace velmora
