// Whose turn it is. The browser's events and the user's actions are handled one after the other: a
// question to the user holds the turn in which it was asked, and so does a wait for a page.
#pragma once

#include <deque>
#include <functional>
#include <utility>

namespace velmora {

class Turns {
public:
    using Action = std::function<void()>;

    /// `later` runs an action from the main loop, soon. Without it, Post runs what it can at once.
    explicit Turns(std::function<void(Action)> later = {}) : later_(std::move(later)) {}
    Turns(const Turns&) = delete;
    Turns& operator=(const Turns&) = delete;

    /// Runs the action in a turn of its own: before this returns if no turn is under way, after those
    /// that wait; otherwise once its time has come.
    void Take(Action action);
    /// The same, but never before this returns: for whoever must not be held up.
    void Post(Action action);
    /// Runs the action now, before those that wait; false, and the action is not run, if a turn is
    /// under way.
    bool TakeAtOnce(const Action& action);
    /// From now on nothing is run any more.
    void End();

private:
    void Run(const Action& action);
    void RunWaiting();
    void RunWaitingLater();
    /// False if nothing waits, or a turn is under way.
    bool RunNext();

    std::function<void(Action)> later_;
    std::deque<Action> waiting_;
    bool isTaken_ = false;
    bool hasEnded_ = false;
};

}  // namespace velmora
