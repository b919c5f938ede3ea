// The pages that come from inside the program: the built-in site and the page for a failed load.
#pragma once

#include <webkit/webkit.h>

#include <string>

namespace velmora {

/// Answers every request to velmora://guide/ in this context from the packed pages. The answer page
/// shows the fields that a form has sent, up to 64 KB and 200 of them. Other hosts have no page. Only
/// the guide's own pages and the user reach it: pages of other sites can neither frame it nor send to it.
void ServeGuide(WebKitWebContext* context);

/// The page that tells the user that an address could not be shown, and why. Both texts are plain.
std::string FailurePage(const std::string& address, const std::string& reason);

}  // namespace velmora
