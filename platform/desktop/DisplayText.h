// Texts on their way to the toolkit, which takes valid UTF-8 without zero bytes only.
#pragma once

#include <cstddef>
#include <string>

#include <glibmm/ustring.h>

namespace velmora {

/// The text as the toolkit can show it: what is no valid UTF-8 is replaced, a zero byte is a blank.
Glib::ustring DisplayText(const std::string& text);

/// The beginning of a text, at most `limit` characters, on one line: line breaks and tabs are blanks.
/// A text that was cut ends in an ellipsis.
Glib::ustring OneLine(const std::string& text, std::size_t limit = 400);

}  // namespace velmora
