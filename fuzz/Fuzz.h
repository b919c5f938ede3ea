// What the fuzz targets share. Each target defines Try; what must hold of every input stands there as Expect.
#pragma once

#include <string>
#include <vector>

#include "platform/Turns.h"
#include "shell/frmBrowser.h"
#include "tests/support/MemoryDialogs.h"
#include "tests/support/MemoryFiles.h"

namespace velmora::fuzz {

/// One run of the target, with what the fuzzer has thought of.
void Try(const std::string& input);

/// Ends the run if something does not hold, so that the fuzzer keeps the input.
void Expect(bool holds, const char* what);

/// The pieces of the input between these characters; at least one.
std::vector<std::string> PiecesOf(const std::string& input, char separator);

/// The program without a desktop, not yet started. Every question gets the safe answer.
struct Program {
    Turns turns;
    test::MemoryDialogs dialogs;
    test::MemoryFiles files;
    test::MemoryProxy proxy;
    test::MemoryProxyTable proxyTable;
    frmBrowser browser{Platform{turns, dialogs, files, proxy, proxyTable}};
};

}  // namespace velmora::fuzz
