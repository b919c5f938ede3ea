// Pages that say what happened, in place of one that could not be shown or stopped working.
#pragma once

#include <webkit/webkit.h>

#include <string>

namespace velmora {

/// The address that the document of such a page has; the view goes on showing the one that failed.
inline constexpr char kFailureAddress[] = "velmora://error/";

/// From now on the view explains failed loads, certificates that nobody trusts and a web process that
/// ended.
void ExplainFailures(WebKitWebView* view);

/// Ends the view's web process, and so a page that hangs. Then the view loads `next`; with an empty
/// one it tells that the page was closed.
void EndPage(WebKitWebView* view, const std::string& next);

}  // namespace velmora
