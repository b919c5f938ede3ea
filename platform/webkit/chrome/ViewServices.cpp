#include "platform/webkit/chrome/ViewServices.h"

#include "platform/webkit/chrome/LoadFailures.h"
#include "platform/webkit/engine/StandingPage.h"

namespace velmora {

namespace {

bool OnDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type)
{
    if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return false;
    if (!IsForSaving(WEBKIT_RESPONSE_POLICY_DECISION(decision))) return false;
    webkit_policy_decision_download(decision);
    return true;
}

}  // namespace

void ViewServices::Serve(WebKitWebView* view)
{
    WatchStandingPage(view);
    otherPrograms_.Guard(view);
    Connect(view, "decide-policy", OnDecidePolicy);
    ExplainFailures(view);
    hungPages_.Watch(view);
    permissions_.Guard(view);
}

}  // namespace velmora
