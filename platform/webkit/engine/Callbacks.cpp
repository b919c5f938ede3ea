#include "platform/webkit/engine/Callbacks.h"

#include <utility>

namespace velmora {

Callbacks::Callbacks() : guard_(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr))) {}

Callbacks::~Callbacks() { g_object_unref(guard_); }

void Callbacks::Connect(gpointer source, const char* signal, GCallback callback, gpointer data)
{
    GClosure* closure = g_cclosure_new(callback, data, nullptr);
    g_object_watch_closure(guard_, closure);
    g_signal_connect_closure(source, signal, closure, FALSE);
}

void Callbacks::Later(std::function<void()> action)
{
    struct Call {
        std::weak_ptr<bool> alive;
        std::function<void()> action;
    };
    g_idle_add_full(
        G_PRIORITY_DEFAULT,
        [](gpointer data) -> gboolean {
            const auto& call = *static_cast<Call*>(data);
            if (!call.alive.expired()) call.action();
            return G_SOURCE_REMOVE;
        },
        new Call{alive_, std::move(action)}, [](gpointer data) { delete static_cast<Call*>(data); });
}

}  // namespace velmora
