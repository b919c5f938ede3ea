// Functions that are called by signals and by the main loop.
#pragma once

#include <glib-object.h>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "platform/glib/Handle.h"

namespace velmora {

/// An argument of a signal. A pointer may be to an object, a text or any other type of glib's.
template <class T>
T SignalArgument(const GValue& value)
{
    if constexpr (std::is_pointer_v<T>) {
        return static_cast<T>(g_value_peek_pointer(&value));
    } else if constexpr (std::is_enum_v<T>) {
        if (G_VALUE_HOLDS_FLAGS(&value)) return static_cast<T>(g_value_get_flags(&value));
        return static_cast<T>(g_value_get_enum(&value));
    } else if constexpr (std::is_same_v<T, double>) {
        return g_value_get_double(&value);
    } else if constexpr (std::is_same_v<T, guint>) {
        return g_value_get_uint(&value);
    } else {
        static_assert(std::is_same_v<T, int>);
        return g_value_get_int(&value);
    }
}

/// A closure that owns a function.
template <class Result, class... Arguments>
GClosure* NewClosure(std::function<Result(Arguments...)> function)
{
    using Function = decltype(function);
    GClosure* closure = g_closure_new_simple(sizeof(GClosure), new Function(std::move(function)));
    g_closure_add_finalize_notifier(closure, closure->data,
                                    [](gpointer data, GClosure*) { delete static_cast<Function*>(data); });
    g_closure_set_marshal(closure, [](GClosure* called, [[maybe_unused]] GValue* result, guint count,
                                      [[maybe_unused]] const GValue* given, gpointer, gpointer) {
        g_return_if_fail(count >= sizeof...(Arguments));
        const auto call = [&]<std::size_t... I>(std::index_sequence<I...>)
        {
            return (*static_cast<const Function*>(called->data))(SignalArgument<Arguments>(given[I])...);
        };
        constexpr auto kPlaces = std::index_sequence_for<Arguments...>();
        if constexpr (std::is_void_v<Result>) {
            call(kPlaces);
        } else if constexpr (std::is_same_v<Result, bool>) {
            g_value_set_boolean(result, call(kPlaces));
        } else {
            g_value_take_object(result, call(kPlaces));
        }
    });
    return closure;
}

/// Calls the function at each such signal of the source, as long as the source lives and, if one is
/// given, the owner. The function takes the source and the signal's arguments, or the first of them.
template <class Function>
void Connect(gpointer source, const char* signal, Function function, gpointer owner = nullptr)
{
    GClosure* closure = NewClosure(std::function(std::move(function)));
    if (owner) g_object_watch_closure(G_OBJECT(owner), closure);
    g_signal_connect_closure(source, signal, closure, FALSE);
}

/// A member of the object that is called back. Once it goes, nothing that was set up through it calls
/// any more, even if it goes in the middle of such a call.
class Callbacks {
public:
    using Action = std::function<void()>;

    Callbacks() = default;
    /// The guard itself lives on until a call that is under way has returned; it lets go at once.
    ~Callbacks() { g_object_run_dispose(guard_.get()); }
    Callbacks(const Callbacks&) = delete;
    Callbacks& operator=(const Callbacks&) = delete;

    template <class Function>
    void Connect(gpointer source, const char* signal, Function function)
    {
        velmora::Connect(source, signal, std::move(function), guard_.get());
    }
    /// Runs the action from the main loop, soon. It may hold up its caller, as a question to the user
    /// does; a signal's handler that did so would hold up the engine.
    void Later(Action action, int priority = G_PRIORITY_DEFAULT)
    {
        Start(g_idle_source_new(), std::move(action), priority);
    }
    /// Runs the action once the time has passed. Gives a number by which it can be cancelled.
    guint After(guint milliseconds, Action action)
    {
        return Start(g_timeout_source_new(milliseconds), std::move(action), G_PRIORITY_DEFAULT);
    }
    /// The number of an action that has run already, or 0, does nothing.
    static void Cancel(guint number)
    {
        GSource* const source = number > 0 ? g_main_context_find_source_by_id(nullptr, number) : nullptr;
        if (source) g_source_destroy(source);
    }

private:
    guint Start(GSource* made, Action action, int priority)
    {
        const auto source = Owned(made, g_source_unref);
        GClosure* closure = NewClosure(std::move(action));
        g_object_watch_closure(guard_.get(), closure);
        // Ends the source with the closure, so that what the action holds waits for no time to come.
        g_source_set_closure(made, closure);
        g_source_set_priority(made, priority);
        return g_source_attach(made, nullptr);
    }

    std::shared_ptr<GObject> guard_ = Owned(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr)));
};

}  // namespace velmora
