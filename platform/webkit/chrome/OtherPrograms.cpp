#include "platform/webkit/chrome/OtherPrograms.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/webkit/engine/StandingPage.h"

namespace velmora {

namespace {

constexpr std::array<std::string_view, 10> kEngineSchemes{"http", "https", "file", "about",   "data",
                                                          "blob", "ws",    "wss",  "velmora", "javascript"};
// A mail's text may be part of the address; what matters of it stands first.
constexpr glong kShownLetters = 80;

/// In small letters; empty if there is none.
std::string SchemeOf(const std::string& address)
{
    return OwnedText(g_ascii_strdown(OwnedText(g_uri_parse_scheme(address.c_str())).c_str(), -1));
}

std::string Shortened(const std::string& address)
{
    const std::string text = OwnedText(g_utf8_make_valid(address.data(), static_cast<gssize>(address.size())));
    if (g_utf8_strlen(text.c_str(), -1) <= kShownLetters) return text;
    return OwnedText(g_utf8_substring(text.c_str(), 0, kShownLetters)) + "\u2026";
}

bool HasProgram(const std::string& address)
{
    return Owned(g_app_info_get_default_for_uri_scheme(SchemeOf(address).c_str())) != nullptr;
}

}  // namespace

bool IsForAnotherProgram(const std::string& address)
{
    const std::string scheme = SchemeOf(address);
    return !scheme.empty() && std::find(kEngineSchemes.begin(), kEngineSchemes.end(), scheme) == kEngineSchemes.end();
}

void OtherPrograms::Guard(WebKitWebView* view)
{
    const auto decide = [this](WebKitWebView* from, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
        if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return false;
        WebKitNavigationAction* action =
            webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
        if (!Take(from, action)) return false;
        webkit_policy_decision_ignore(decision);
        return true;
    };
    callbacks_.Connect(view, "decide-policy", decide);
}

bool OtherPrograms::Take(WebKitWebView* view, WebKitNavigationAction* action)
{
    const std::string address = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    if (!IsForAnotherProgram(address)) return false;
    // The view takes on an address before its page only when the program itself loads it.
    const char* loaded = webkit_web_view_get_uri(view);
    const bool isTyped = loaded && address == loaded;
    const Wish wish{address, isTyped ? "" : StandingSite(view)};
    if (isTyped || webkit_navigation_action_is_user_gesture(action)) {
        // One question at a time: a page that wants more until it is answered gets nothing.
        if (std::exchange(isAsking_, true)) return true;
        turns_.Post([this, wish] {
            Decide(wish);
            isAsking_ = false;
        });
    } else if (told_.insert(wish.site).second) {
        dialogs_.Tell(wish.site + " was kept from opening " + Shortened(address) +
                      " with another program. Press a link to it if you want that.");
    }
    return true;
}

void OtherPrograms::Decide(const Wish& wish)
{
    if (!HasProgram(wish.address)) {
        dialogs_.Tell("No program on this computer opens " + Shortened(wish.address) + ". Install one to follow it.");
    } else if (IsAllowed(wish)) {
        Launch(wish.address);
    }
}

bool OtherPrograms::IsAllowed(const Wish& wish)
{
    if (refused_.count(wish.site) > 0) return false;
    const std::string what = "open " + Shortened(wish.address) + " with another program";
    const Answer answer =
        dialogs_.MsgBox(wish.site.empty() ? "Do you want to " + what + "?"
                                          : "The site " + wish.site + " wants to " + what + ". Do you allow it?",
                        Buttons::CautiousYesNo, Icon::Exclamation);
    if (answer != Answer::Yes && !wish.site.empty()) refused_.insert(wish.site);
    return answer == Answer::Yes;
}

void OtherPrograms::Launch(const std::string& address)
{
    GError* error = nullptr;
    const auto context = Owned(gdk_display_get_app_launch_context(gdk_display_get_default()));
    g_app_info_launch_default_for_uri(address.c_str(), G_APP_LAUNCH_CONTEXT(context.get()), &error);
    const auto held = Owned(error, g_error_free);
    if (held)
        dialogs_.Tell(Shortened(address) + " could not be opened: " + held->message +
                      ". Start the program for it yourself.");
}

}  // namespace velmora
