#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "platform/posix/Folders.h"
#include "platform/webkit/engine/Sandbox.h"
#include "program/Program.h"

namespace {

using velmora::Program;

constexpr int kWrongUse = 2;

/// The exit code after an answer, which may have found no room where it went.
int Printed() { return std::fflush(stdout) == 0 ? 0 : 1; }

/// Answers what was asked on the command line, without a display. Gives the program's exit code.
int AnswerArguments(int count, char** arguments)
{
    const std::string_view first = arguments[1];
    if (count == 2 && first == "--version") {
        std::puts("velmora " VELMORA_VERSION);
        return Printed();
    }
    if (count == 2 && first == "--help") {
        std::printf(
            "Usage: velmora [--help | --version]\n\n"
            "A web browser that records the forms that you send and fills them in again. Started without\n"
            "arguments it opens its window, with a guide in it.\n\n"
            "Your records are kept in %s/session\n",
            Program::UserOptions().programFolder.c_str());
        return Printed();
    }
    std::fputs("velmora: it is started with --help, with --version or with no argument at all\n", stderr);
    return kWrongUse;
}

int Start()
{
    // A file that would grow beyond the user's limit is one that cannot be written, and the user is told so.
    std::signal(SIGXFSZ, SIG_IGN);
    velmora::Desktop desktop;
    const std::string obstacle = velmora::SandboxObstacle();
    if (!obstacle.empty()) {
        const std::string message =
            "Velmora shows pages in a sandbox, and this system does not let it start one: " + obstacle;
        std::fprintf(stderr, "velmora: %s\n", message.c_str());
        desktop.MsgBox(message, velmora::Buttons::Ok, velmora::Icon::Exclamation, {});
        return 1;
    }
    // A copy that is not installed has its icon beside it.
    desktop.FindIcons(velmora::FolderOfRunningProgram() + "/icons");
    Program program(desktop, desktop, Program::UserOptions());
    program.Start();
    if (velmora::IsSandboxOff()) {
        const std::string message =
            "The sandbox is switched off: pages can reach all that you can reach. Start Velmora without "
            "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS to switch it on.";
        std::fprintf(stderr, "velmora: %s\n", message.c_str());
        desktop.Tell(message);
    }
    return desktop.Run();
}

}  // namespace

int main(int count, char** arguments)
{
    try {
        return count > 1 ? AnswerArguments(count, arguments) : Start();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora: %s\n", error.what());
        return 1;
    }
}
