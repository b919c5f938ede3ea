#include "platform/Turns.h"

#include <utility>

namespace velmora {

void Turns::Take(Action action)
{
    if (hasEnded_) return;
    waiting_.push_back(std::move(action));
    RunWaiting();
}

void Turns::Post(Action action)
{
    if (hasEnded_) return;
    waiting_.push_back(std::move(action));
    if (!isTaken_) RunWaitingLater();
}

bool Turns::TakeAtOnce(const Action& action)
{
    if (isTaken_ || hasEnded_) return false;
    Run(action);
    if (!waiting_.empty()) RunWaitingLater();
    return true;
}

void Turns::End()
{
    hasEnded_ = true;
    waiting_.clear();
}

void Turns::Run(const Action& action)
{
    struct Held {
        explicit Held(bool& flag) : isTaken(flag) { isTaken = true; }
        ~Held() { isTaken = false; }
        bool& isTaken;
    } const held(isTaken_);
    action();
}

void Turns::RunWaitingLater()
{
    if (!later_) return RunWaiting();
    // One at a time: many turns that wait would hold the window for all of them together.
    later_([this] {
        if (RunNext() && !waiting_.empty()) RunWaitingLater();
    });
}

void Turns::RunWaiting()
{
    while (RunNext()) {
    }
}

bool Turns::RunNext()
{
    if (isTaken_ || waiting_.empty()) return false;
    const Action next = std::move(waiting_.front());
    waiting_.pop_front();
    Run(next);
    return true;
}

}  // namespace velmora
