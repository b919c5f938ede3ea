// Addresses: what a user types as one, and their parts.
#pragma once

#include <string>

namespace velmora {

/// The address to load for a text from the address box, blanks at its ends removed: "about:blank"
/// for an empty one, a file address for a path from the root, a web address for one without a scheme
/// ("example.org", "localhost:8080/x"), any other as it is.
std::string LoadableAddress(const std::string& typed);

std::string WithoutFragment(const std::string& url);
/// Without the fragment either.
std::string WithoutQuery(const std::string& url);

}  // namespace velmora
