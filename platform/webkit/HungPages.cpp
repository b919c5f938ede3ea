#include "platform/webkit/HungPages.h"

#include <memory>
#include <string>

#include "platform/webkit/LoadFailures.h"

namespace velmora {

namespace {

/// The address of the page that stands in the view, whatever is on its way to it.
std::string StandingAddress(WebKitWebView* view)
{
    WebKitBackForwardListItem* item =
        webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view));
    const char* address = item ? webkit_back_forward_list_item_get_uri(item) : nullptr;
    return address ? address : "";
}

/// Ends the page, and goes on to where the user wanted to go meanwhile, if anywhere.
void Stop(WebKitWebView* view)
{
    const char* wanted = webkit_web_view_get_uri(view);
    const std::string next = wanted && wanted != StandingAddress(view) ? wanted : "";
    EndPage(view, next);
}

}  // namespace

void HungPages::Watch(WebKitWebView* view)
{
    const auto changed = +[](WebKitWebView* from, GParamSpec*, HungPages* self) {
        if (webkit_web_view_get_is_web_process_responsive(from)) return;
        const std::shared_ptr<WebKitWebView> hung(WEBKIT_WEB_VIEW(g_object_ref(from)), g_object_unref);
        self->callbacks_.Later([self, hung] { self->Ask(hung.get()); });
    };
    callbacks_.Connect(view, "notify::is-web-process-responsive", G_CALLBACK(changed), this);
}

void HungPages::Ask(WebKitWebView* view)
{
    // The views of one process hang together; one question is enough.
    if (isAsking_ || webkit_web_view_get_is_web_process_responsive(view)) return;
    isAsking_ = true;
    const Answer answer =
        dialogs_.MsgBox("The page " + StandingAddress(view) + " does not answer. Do you want to stop it?",
                        Buttons::YesNo, Icon::Exclamation);
    isAsking_ = false;
    // It may have come back while the question was open.
    if (answer == Answer::Yes && !webkit_web_view_get_is_web_process_responsive(view)) Stop(view);
}

}  // namespace velmora
