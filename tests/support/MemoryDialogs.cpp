#include "tests/support/MemoryDialogs.h"

#include <stdexcept>

#include "tests/support/Faults.h"

namespace velmora::test {

namespace {

std::string Line(const std::string& text, Buttons buttons, Icon icon, const std::string& title)
{
    std::string line = title.empty() ? text : "[" + title + "] " + text;
    if (buttons == Buttons::YesNo) line += " (YesNo)";
    if (buttons == Buttons::YesNoYesIsSafe) line += " (YesNo, Yes is safe)";
    if (buttons == Buttons::OkCancel) line += " (OkCancel)";
    if (icon == Icon::Information) line += " (i)";
    if (icon == Icon::Exclamation) line += " (!)";
    return line;
}

}  // namespace

Answer MemoryDialogs::MsgBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title)
{
    MayFail<std::runtime_error>();
    Shown.push_back(Line(text, buttons, icon, title));
    if (buttons == Buttons::Ok) return Answer::Ok;
    if (Answers.empty()) {
        ++Unanswered;
        return SafeAnswer(buttons);
    }
    const Answer answer = Answers.front();
    Answers.pop_front();
    return answer;
}

void MemoryDialogs::ShowModal(Window& dialog)
{
    MayFail<std::runtime_error>();
    const bool isCentred =
        dialog.Left() == (ScreenWidth() - dialog.Width()) / 2 && dialog.Top() == (ScreenHeight() - dialog.Height()) / 2;
    Shown.push_back("dialog " + dialog.Caption() + (isCentred ? "" : ", not centred"));
    dialog.Visible = true;
    if (!Visits.empty()) {
        const auto visit = Visits.front();
        Visits.pop_front();
        visit(dialog);
    }
    if (!dialog.Visible()) return;
    dialog.CloseRequested.Raise();
    dialog.Visible = false;
}

void MemoryDialogs::DoEvents()
{
    ++EventRounds;
    if (PendingEvents) PendingEvents();
}

}  // namespace velmora::test
