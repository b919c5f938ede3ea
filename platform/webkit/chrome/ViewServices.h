// What a web view owes its user beyond showing pages, the same for the main view and for pop-ups.
#pragma once

#include <webkit/webkit.h>

#include "platform/Dialogs.h"
#include "platform/webkit/chrome/Downloads.h"
#include "platform/webkit/chrome/HungPages.h"
#include "platform/webkit/chrome/OtherPrograms.h"
#include "platform/webkit/chrome/Permissions.h"

namespace velmora {

class ViewServices {
public:
    /// What has to be asked is asked in `turns`, which must outlive this.
    ViewServices(WebKitNetworkSession* session, Dialogs& dialogs, Turns& turns)
        : otherPrograms_(dialogs, turns), hungPages_(dialogs, turns), permissions_(dialogs, turns),
          downloads_(session, dialogs, turns)
    {
    }

    /// From now on the view leaves to other programs what is theirs, explains failures, saves what cannot
    /// be shown, asks before pages get what needs leave, and tells when a page hangs. To be called before
    /// the view gets other handlers of navigations: they do not get what is another program's.
    void Serve(WebKitWebView* view);

    velmora::Downloads& Downloads() { return downloads_; }

private:
    velmora::OtherPrograms otherPrograms_;
    HungPages hungPages_;
    Permissions permissions_;
    velmora::Downloads downloads_;
};

}  // namespace velmora
