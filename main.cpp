#include <cstdio>
#include <exception>

#include "platform/webkit/Sandbox.h"
#include "program/Program.h"

int main()
{
    try {
        velmora::Desktop desktop;
        if (!velmora::SandboxStarts()) {
            const char* message =
                "Velmora shows pages in a sandbox, and this system does not let it start one: \"bwrap\" must be "
                "installed, and user namespaces must be allowed.";
            std::fprintf(stderr, "velmora: %s\n", message);
            desktop.MsgBox(message, velmora::Buttons::Ok, velmora::Icon::Exclamation, {});
            return 1;
        }
        velmora::Program program(desktop, desktop, velmora::Program::UserOptions());
        program.Start();
        return desktop.Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora: %s\n", error.what());
        return 1;
    }
}
