// Pages that do not answer any more.
#pragma once

#include <webkit/webkit.h>

#include "platform/Dialogs.h"
#include "platform/Turns.h"
#include "platform/glib/Callbacks.h"

namespace velmora {

class HungPages {
public:
    HungPages(Dialogs& dialogs, Turns& turns) : dialogs_(dialogs), turns_(turns) {}

    /// From now on, when the view's page does not answer for some seconds, the user is asked whether
    /// to stop it. Without a Yes it is left to itself.
    void Watch(WebKitWebView* view);

private:
    void Ask(WebKitWebView* view);

    Dialogs& dialogs_;
    Turns& turns_;
    Callbacks callbacks_;
};

}  // namespace velmora
