// Addresses that are another program's to open: mail, telephone and the like.
#pragma once

#include <webkit/webkit.h>

#include <set>
#include <string>

#include "platform/Dialogs.h"
#include "platform/Turns.h"
#include "platform/glib/Callbacks.h"

namespace velmora {

/// Whether the engine can make nothing of an address; one without a scheme is the engine's.
bool IsForAnotherProgram(const std::string& address);

class OtherPrograms {
public:
    OtherPrograms(Dialogs& dialogs, Turns& turns) : dialogs_(dialogs), turns_(turns) {}

    /// From now on no such address takes the place of the view's page, and what was typed there. When
    /// the user typed it or gave reason for it with a click or a key, the user is asked and the
    /// desktop's program for it opens it, or a line tells that there is none. A No holds for the site
    /// until the program ends. What a page wants by itself is refused.
    void Guard(WebKitWebView* view);

private:
    struct Wish {
        std::string address;
        std::string site;  ///< Empty: the user typed the address.
    };

    bool Take(WebKitWebView* view, WebKitNavigationAction* action);
    void Decide(const Wish& wish);
    bool IsAllowed(const Wish& wish);
    void Launch(const std::string& address);

    Dialogs& dialogs_;
    Turns& turns_;
    std::set<std::string> refused_;  ///< Sites that got a No.
    std::set<std::string> told_;     ///< Sites whose own wishes the user was told about.
    bool isAsking_ = false;
    Callbacks callbacks_;
};

}  // namespace velmora
