// A main loop inside a handler: the handler is held, events go on.
#pragma once

#include <glibmm/main.h>

namespace velmora {

class NestedLoop {
public:
    /// Handles events until Finish was called, be that before or while this runs.
    void Run()
    {
        if (!isFinished_) loop_->run();
    }
    void Finish()
    {
        isFinished_ = true;
        loop_->quit();
    }
    bool IsFinished() const { return isFinished_; }

private:
    Glib::RefPtr<Glib::MainLoop> loop_ = Glib::MainLoop::create();
    bool isFinished_ = false;
};

}  // namespace velmora
