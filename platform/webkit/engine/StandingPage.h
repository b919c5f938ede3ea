// The page that stands in a view, whatever is on its way to it.
#pragma once

#include <webkit/webkit.h>

#include <string>

namespace velmora {

/// To be called before the view loads anything: from now on it is known what stands in it. The view's
/// own address, and its place in the history, may be those of a page that is only being loaded.
void WatchStandingPage(WebKitWebView* view);

/// A window that a page opened counts as its opener's until it has a page of its own: what its opener
/// writes into it, and what it does, is the opener's.
void CountAsOpener(WebKitWebView* view, WebKitWebView* opener);

/// The address of the page that stands in the view; empty before the first.
std::string StandingAddress(WebKitWebView* view);

/// Scheme, host and port of an address; the address itself if it has no such thing.
std::string SiteOf(const std::string& address);
/// The same of the page that stands in the view.
std::string StandingSite(WebKitWebView* view);

}  // namespace velmora
