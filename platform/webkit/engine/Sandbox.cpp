#include "platform/webkit/engine/Sandbox.h"

#include <gio/gio.h>

#include <cstring>

#include "platform/glib/Handle.h"

namespace velmora {

namespace {

/// Whether a command runs to a good end; what it says is thrown away.
bool Succeeds(const char* const* command)
{
    const auto flags =
        static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    int status = 1;
    const bool ran = g_spawn_sync(nullptr, const_cast<char**>(command), nullptr, flags, nullptr, nullptr, nullptr,
                                  nullptr, &status, nullptr);
    return ran && status == 0;
}

bool HasSessionBus()
{
    return !OwnedText(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)).empty();
}

}  // namespace

std::string SandboxObstacle()
{
    if (IsSandboxOff()) return {};
    const char* sandbox[] = {"bwrap", "--unshare-all", "--ro-bind", "/", "/", "true", nullptr};
    if (!Succeeds(sandbox)) return "\"bwrap\" must be installed, and user namespaces must be allowed.";
    // Where there is a bus, the engine starts it for the pages, and ends the program if it cannot.
    const char* proxy[] = {"xdg-dbus-proxy", "--version", nullptr};
    if (HasSessionBus() && !Succeeds(proxy)) return "\"xdg-dbus-proxy\" must be installed.";
    return {};
}

bool IsSandboxOff()
{
    const char* value = g_getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS");
    return value && std::strcmp(value, "0") != 0;
}

}  // namespace velmora
