#include "fuzz/Fuzz.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace velmora::fuzz {

void Expect(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

std::vector<std::string> PiecesOf(const std::string& input, char separator)
{
    std::vector<std::string> pieces{""};
    for (const char c : input) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

}  // namespace velmora::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    velmora::fuzz::Try(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
