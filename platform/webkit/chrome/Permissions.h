// What pages may do only with the user's leave: camera, microphone, place, clipboard and the like.
#pragma once

#include <webkit/webkit.h>

#include <deque>
#include <memory>
#include <set>
#include <string>

#include "platform/Dialogs.h"
#include "platform/Turns.h"
#include "platform/glib/Callbacks.h"

namespace velmora {

class Permissions {
public:
    Permissions(Dialogs& dialogs, Turns& turns) : dialogs_(dialogs), turns_(turns) {}

    /// From now on the user is asked about the wishes of the view's pages, one after the other. A No
    /// holds for the site until the program ends, so that no site can ask without end; a Yes is for
    /// this once.
    void Guard(WebKitWebView* view);

private:
    struct Wish {
        std::shared_ptr<WebKitPermissionRequest> request;
        std::shared_ptr<WebKitWebView> view;
        std::string site;
        std::string text;  ///< What the site wants to do.
    };

    void Take(WebKitWebView* view, WebKitPermissionRequest* request);
    void AskNext();
    bool IsGranted(const Wish& wish);

    Dialogs& dialogs_;
    Turns& turns_;
    std::deque<Wish> wishes_;
    std::set<std::string> refused_;
    Callbacks callbacks_;
};

}  // namespace velmora
