#include "platform/webkit/engine/UserSession.h"

#include <glib/gstdio.h>

namespace velmora {

namespace {

void MakePrivateFolder(const std::string& folder)
{
    g_mkdir_with_parents(folder.c_str(), 0700);
    g_chmod(folder.c_str(), 0700);
}

}  // namespace

WebKitNetworkSession* NewUserSession(const std::string& dataFolder, const std::string& cacheFolder)
{
    if (dataFolder.empty()) return webkit_network_session_new_ephemeral();
    // An empty name would be the folder that the program was started in.
    const std::string cache = cacheFolder.empty() ? dataFolder + "/cache" : cacheFolder;
    // Before the engine does, which would make them open to everyone on the machine.
    MakePrivateFolder(dataFolder);
    MakePrivateFolder(cache);
    WebKitNetworkSession* session = webkit_network_session_new(dataFolder.c_str(), cache.c_str());
    webkit_cookie_manager_set_persistent_storage(webkit_network_session_get_cookie_manager(session),
                                                 (dataFolder + "/cookies.sqlite").c_str(),
                                                 WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    return session;
}

}  // namespace velmora
