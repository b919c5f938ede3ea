// All that the program is handed at its start.
#pragma once

#include <string>

namespace velmora {

class Dialogs;
class Files;
class Proxy;
class ProxyTable;
class Turns;

struct Platform {
    Turns& turns;  ///< In which the user's actions and the browser's events are handled.
    Dialogs& dialogs;
    Files& files;
    Proxy& proxy;
    ProxyTable& proxyTable;
    std::string website = "velmora://guide/";
    std::string contact = "contact@velmora.example";
};

}  // namespace velmora
