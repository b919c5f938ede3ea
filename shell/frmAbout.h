// The about box.
#pragma once

#include <string>

#include "platform/controls/Controls.h"

namespace velmora {

class frmAbout : public Window {
public:
    frmAbout(const std::string& website, const std::string& contact);

    void cmdOK_Click();

    Picture imgLogo{*this, "imgLogo", "logo.svg"};
    Label lblProduct{*this, "lblProduct", "       Velmora "};
    Label lblVersion{*this, "lblVersion", ""};
    Label lblContact{*this, "lblContact", "Contact points are:"};
    Label lblUrl{*this, "lblUrl", ""};
    Label lblEmail{*this, "lblEmail", ""};
    CommandButton cmdOK{*this, "cmdOK", "OK", {.Default = true, .Cancel = true}};
};

}  // namespace velmora
