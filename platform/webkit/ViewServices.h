// What a web view owes its user beyond showing pages, the same for the main view and for pop-ups.
#pragma once

#include <webkit/webkit.h>

#include "platform/Dialogs.h"
#include "platform/webkit/Downloads.h"
#include "platform/webkit/HungPages.h"
#include "platform/webkit/Permissions.h"

namespace velmora {

class ViewServices {
public:
    ViewServices(WebKitNetworkSession* session, Dialogs& dialogs)
        : hungPages_(dialogs), permissions_(dialogs), downloads_(session, dialogs)
    {
    }

    /// From now on the view explains failures, saves what cannot be shown, asks before pages get what
    /// needs leave, and tells when a page hangs.
    void Serve(WebKitWebView* view);

    velmora::Downloads& Downloads() { return downloads_; }

private:
    HungPages hungPages_;
    Permissions permissions_;
    velmora::Downloads downloads_;
};

}  // namespace velmora
