#include "platform/webkit/Sandbox.h"

#include <glib.h>

namespace velmora {

bool SandboxStarts()
{
    if (g_getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS")) return true;
    const char* command[] = {"bwrap", "--unshare-all", "--ro-bind", "/", "/", "true", nullptr};
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDERR_TO_DEV_NULL);
    int status = 1;
    const bool ran = g_spawn_sync(nullptr, const_cast<char**>(command), nullptr, flags, nullptr, nullptr, nullptr,
                                  nullptr, &status, nullptr);
    return ran && status == 0;
}

}  // namespace velmora
