// The page's markup as the logic reads it.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The engine writes every attribute value in quotes. This takes them off a value that can do
/// without (not empty, no white space, quote, "<", ">" or "`"), with its character references
/// decoded, so that an action reads action=/bin/login.asp. All else, scripts and comments included,
/// stays as it is. Linear in the size of the text.
std::string PlainMarkup(std::string_view markup);

}  // namespace velmora
