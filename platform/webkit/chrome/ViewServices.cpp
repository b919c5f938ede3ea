#include "platform/webkit/chrome/ViewServices.h"

#include "platform/webkit/chrome/LoadFailures.h"
#include "platform/webkit/engine/StandingPage.h"

namespace velmora {

namespace {

gboolean OnDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type, gpointer)
{
    if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return FALSE;
    if (!IsForSaving(WEBKIT_RESPONSE_POLICY_DECISION(decision))) return FALSE;
    webkit_policy_decision_download(decision);
    return TRUE;
}

}  // namespace

void ViewServices::Serve(WebKitWebView* view)
{
    WatchStandingPage(view);
    otherPrograms_.Guard(view);
    g_signal_connect(view, "decide-policy", G_CALLBACK(OnDecidePolicy), nullptr);
    ExplainFailures(view);
    hungPages_.Watch(view);
    permissions_.Guard(view);
}

}  // namespace velmora
