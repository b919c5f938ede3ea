#include <cstdio>
#include <exception>

#include "program/Program.h"

int main()
{
    try {
        velmora::Desktop desktop;
        velmora::Program program(desktop, desktop, velmora::Program::UserOptions());
        program.Start();
        return desktop.Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora: %s\n", error.what());
        return 1;
    }
}
