#include "platform/webkit/chrome/Permissions.h"

#include <utility>

#include "platform/webkit/engine/StandingPage.h"

namespace velmora {

namespace {

// More than a page can have a reason for; what comes beyond is refused.
constexpr std::size_t kMostWishes = 8;

std::string MediaWish(WebKitUserMediaPermissionRequest* request)
{
    if (webkit_user_media_permission_is_for_display_device(request)) return "record what is on your screen";
    const bool sound = webkit_user_media_permission_is_for_audio_device(request);
    const bool picture = webkit_user_media_permission_is_for_video_device(request);
    if (sound && picture) return "use your camera and microphone";
    return picture ? "use your camera" : "use your microphone";
}

/// What a page asks for, in words; empty for what no page is allowed.
std::string TextOf(WebKitPermissionRequest* request)
{
    if (WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(request))
        return MediaWish(WEBKIT_USER_MEDIA_PERMISSION_REQUEST(request));
    if (WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request)) return "know where you are";
    if (WEBKIT_IS_NOTIFICATION_PERMISSION_REQUEST(request)) return "show you notifications";
    if (WEBKIT_IS_CLIPBOARD_PERMISSION_REQUEST(request)) return "read what you have copied";
    if (WEBKIT_IS_DEVICE_INFO_PERMISSION_REQUEST(request)) return "know which cameras and microphones you have";
    if (WEBKIT_IS_POINTER_LOCK_PERMISSION_REQUEST(request)) return "take over your mouse pointer";
    if (WEBKIT_IS_MEDIA_KEY_SYSTEM_PERMISSION_REQUEST(request)) return "play protected media";
    if (WEBKIT_IS_WEBSITE_DATA_ACCESS_PERMISSION_REQUEST(request)) {
        return "let " +
               std::string(webkit_website_data_access_permission_request_get_requesting_domain(
                   WEBKIT_WEBSITE_DATA_ACCESS_PERMISSION_REQUEST(request))) +
               " use the data that it has kept on this computer";
    }
    return {};
}

}  // namespace

void Permissions::Guard(WebKitWebView* view)
{
    callbacks_.Connect(view, "permission-request", [this](WebKitWebView* from, WebKitPermissionRequest* request) {
        Take(from, request);
        return true;
    });
}

void Permissions::Take(WebKitWebView* view, WebKitPermissionRequest* request)
{
    Wish wish{Held(request), Held(view), StandingSite(view), TextOf(request)};
    if (wish.text.empty() || wish.site.empty() || wishes_.size() >= kMostWishes) {
        webkit_permission_request_deny(request);
        return;
    }
    wishes_.push_back(std::move(wish));
    turns_.Post([this] { AskNext(); });
}

void Permissions::AskNext()
{
    while (!wishes_.empty()) {
        const Wish wish = std::move(wishes_.front());
        wishes_.pop_front();
        if (IsGranted(wish)) {
            webkit_permission_request_allow(wish.request.get());
        } else {
            webkit_permission_request_deny(wish.request.get());
        }
    }
}

bool Permissions::IsGranted(const Wish& wish)
{
    // The view may show another site by now, when it is asked or when the answer comes, or its window may be
    // closed: a leave for a page that is gone takes down the web process, and the other pages there with it.
    const auto stillAsks = [&] {
        return gtk_widget_get_root(GTK_WIDGET(wish.view.get())) && StandingSite(wish.view.get()) == wish.site;
    };
    if (!stillAsks()) return false;
    const std::string key = wish.site + " " + wish.text;
    if (refused_.count(key) > 0) return false;
    const Answer answer = dialogs_.MsgBox("The site " + wish.site + " wants to " + wish.text + ". Do you allow it?",
                                          Buttons::CautiousYesNo, Icon::Exclamation);
    if (answer != Answer::Yes) refused_.insert(key);
    return answer == Answer::Yes && stillAsks();
}

}  // namespace velmora
