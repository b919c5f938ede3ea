#include <cstdio>
#include <exception>
#include <string>

#include "platform/webkit/engine/Sandbox.h"
#include "program/Program.h"

int main()
{
    try {
        velmora::Desktop desktop;
        const std::string obstacle = velmora::SandboxObstacle();
        if (!obstacle.empty()) {
            const std::string message =
                "Velmora shows pages in a sandbox, and this system does not let it start one: " + obstacle;
            std::fprintf(stderr, "velmora: %s\n", message.c_str());
            desktop.MsgBox(message, velmora::Buttons::Ok, velmora::Icon::Exclamation, {});
            return 1;
        }
        velmora::Program program(desktop, desktop, velmora::Program::UserOptions());
        program.Start();
        if (velmora::IsSandboxOff()) {
            const std::string message = "The sandbox is switched off: pages can reach all that you can reach.";
            std::fprintf(stderr, "velmora: %s\n", message.c_str());
            desktop.Tell(message);
        }
        return desktop.Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora: %s\n", error.what());
        return 1;
    }
}
