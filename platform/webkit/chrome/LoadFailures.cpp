#include "platform/webkit/chrome/LoadFailures.h"

#include <string>

#include "platform/glib/Callbacks.h"
#include "platform/webkit/guide/GuideSite.h"

namespace velmora {

namespace {

// Where a view whose process is being ended goes next.
constexpr char kNext[] = "velmora-next";

// The load that tells of a process that ended: it is to begin, or the last one that began.
constexpr char kTelling[] = "velmora-telling";
enum Telling : guint { kNone, kToBegin, kBegun };

void ShowFailure(WebKitWebView* view, const char* address, const std::string& reason)
{
    const std::string failed = address ? address : "";
    webkit_web_view_load_alternate_html(view, FailurePage(failed, reason).c_str(), failed.c_str(), kFailureAddress);
}

bool OnLoadFailed(WebKitWebView* view, WebKitLoadEvent, const char* uri, GError* error)
{
    // A load that the user or a download broke off has not failed.
    if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
        g_error_matches(error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE)) {
        return false;
    }
    ShowFailure(view, uri, error->message);
    return true;
}

bool OnBadCertificate(WebKitWebView* view, const char* uri)
{
    ShowFailure(view, uri,
                "The site's certificate cannot be trusted, so nothing was sent to it. If the clock of this computer is "
                "right, only the site's owner can mend that.");
    return true;
}

void OnTerminated(WebKitWebView* view)
{
    const std::string next = OwnedText(static_cast<char*>(g_object_steal_data(G_OBJECT(view), kNext)));
    // Where a process ends over telling that, another would end in the same way, and so on.
    const bool isTelling = g_object_get_data(G_OBJECT(view), kTelling) != nullptr;
    if (next.empty() && !isTelling) {
        g_object_set_data(G_OBJECT(view), kTelling, GUINT_TO_POINTER(kToBegin));
        ShowFailure(view, webkit_web_view_get_uri(view),
                    "The page stopped working and was closed. Press Go to load it again.");
    } else if (!next.empty()) {
        webkit_web_view_load_uri(view, next.c_str());
    }
}

void OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event)
{
    if (event == WEBKIT_LOAD_COMMITTED) g_object_set_data(G_OBJECT(view), kNext, nullptr);
    if (event != WEBKIT_LOAD_STARTED) return;
    const bool isTelling = g_object_get_data(G_OBJECT(view), kTelling) == GUINT_TO_POINTER(kToBegin);
    g_object_set_data(G_OBJECT(view), kTelling, GUINT_TO_POINTER(isTelling ? kBegun : kNone));
}

}  // namespace

void ExplainFailures(WebKitWebView* view)
{
    Connect(view, "load-failed", OnLoadFailed);
    Connect(view, "load-failed-with-tls-errors", OnBadCertificate);
    Connect(view, "load-changed", OnLoadChanged);
    Connect(view, "web-process-terminated", OnTerminated);
}

void EndPage(WebKitWebView* view, const std::string& next)
{
    char* address = next.empty() ? nullptr : g_strdup(next.c_str());
    g_object_set_data_full(G_OBJECT(view), kNext, address, g_free);
    webkit_web_view_terminate_web_process(view);
    // The process may be gone already without the engine having said so; then nothing else would come.
    if (!next.empty()) webkit_web_view_load_uri(view, next.c_str());
}

}  // namespace velmora
