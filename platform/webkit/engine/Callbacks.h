// Callbacks of the engine and the toolkit that end with their owner.
#pragma once

#include <glib-object.h>

#include <functional>
#include <memory>

namespace velmora {

/// A member of the object that is called back: once it goes, nothing that was connected through it
/// calls any more, however long the sources of the signals live.
class Callbacks {
public:
    Callbacks();
    ~Callbacks();
    Callbacks(const Callbacks&) = delete;
    Callbacks& operator=(const Callbacks&) = delete;

    void Connect(gpointer source, const char* signal, GCallback callback, gpointer data);
    /// Runs the action when the events at hand have been handled. An action may hold up its caller, as
    /// a question to the user does; a signal's handler that did so would hold up the engine.
    void Later(std::function<void()> action);

private:
    GObject* guard_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace velmora
