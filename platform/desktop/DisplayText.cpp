#include "platform/desktop/DisplayText.h"

#include <algorithm>

#include <glib.h>

namespace velmora {

Glib::ustring DisplayText(const std::string& text)
{
    std::string shown = text;
    std::replace(shown.begin(), shown.end(), '\0', ' ');
    if (g_utf8_validate(shown.data(), static_cast<gssize>(shown.size()), nullptr)) return shown;
    return Glib::ustring(shown).make_valid();
}

Glib::ustring OneLine(const std::string& text, std::size_t limit)
{
    // A character takes four bytes at most; the rest of a long text need not even be looked at.
    const bool isLong = text.size() > limit * 4;
    Glib::ustring shown = DisplayText(isLong ? text.substr(0, limit * 4) : text);
    if (isLong || shown.size() > limit) shown = shown.substr(0, limit) + "…";
    std::string line = shown.raw();
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return line;
}

}  // namespace velmora
