#include "platform/webkit/chrome/HungPages.h"

#include <string>

#include "platform/webkit/chrome/LoadFailures.h"
#include "platform/webkit/engine/StandingPage.h"

namespace velmora {

namespace {

/// Ends the page, and goes on to where the user wanted to go meanwhile, if anywhere.
void Stop(WebKitWebView* view)
{
    const char* wanted = webkit_web_view_get_uri(view);
    const bool goesOn = webkit_web_view_is_loading(view) && wanted && wanted != StandingAddress(view);
    const std::string next = goesOn ? wanted : "";
    EndPage(view, next);
}

}  // namespace

void HungPages::Watch(WebKitWebView* view)
{
    callbacks_.Connect(view, "notify::is-web-process-responsive", [this](WebKitWebView* from) {
        if (webkit_web_view_get_is_web_process_responsive(from)) return;
        turns_.Post([this, hung = Held(from)] { Ask(hung.get()); });
    });
}

void HungPages::Ask(WebKitWebView* view)
{
    // The views of one process hang together; one question is enough. A process that is slow to start has no
    // page yet that could be stopped.
    const std::string page = StandingAddress(view);
    if (page.empty() || webkit_web_view_get_is_web_process_responsive(view)) return;
    const Answer answer = dialogs_.MsgBox("The page " + page + " does not answer. Do you want to stop it?",
                                          Buttons::YesNo, Icon::Exclamation);
    // It may have come back while the question was open.
    if (answer == Answer::Yes && !webkit_web_view_get_is_web_process_responsive(view)) Stop(view);
}

}  // namespace velmora
