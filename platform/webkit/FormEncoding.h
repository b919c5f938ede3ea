// The body of a form submission, built from its entries.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

/// Name and value of each entry, as UTF-8, in the order of the form.
using FormEntries = std::vector<std::pair<std::string, std::string>>;

/// The bytes of an application/x-www-form-urlencoded body (URL standard, "urlencoded serializing";
/// HTML, "convert to a list of name-value pairs": line ends become CR LF). `encoding` is the name of
/// the form's encoding as the encoding standard spells it; "UTF-8" and "windows-1252" are known, and
/// any other counts as UTF-8. A character that the encoding does not hold goes out as "&#number;".
std::string EncodeForm(const FormEntries& entries, std::string_view encoding);

}  // namespace velmora
