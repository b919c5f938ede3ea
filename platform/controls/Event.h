// Events: by which a control, the browser or a timer notifies the program.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace velmora {

/// Keeps a listener connected; the listener goes when this goes. Movable, not copyable.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> disconnect) : disconnect_(std::move(disconnect)) {}
    Subscription(Subscription&& other) noexcept : disconnect_(std::exchange(other.disconnect_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept
    {
        if (this != &other) {
            Reset();
            disconnect_ = std::exchange(other.disconnect_, nullptr);
        }
        return *this;
    }
    ~Subscription() { Reset(); }

    void Reset()
    {
        if (auto disconnect = std::exchange(disconnect_, nullptr)) disconnect();
    }

private:
    std::function<void()> disconnect_;
};

/// A list of listeners, called in the order in which they came. A listener may add or remove
/// listeners, or end the event's owner, while the event is being raised.
template <class... Args>
class Event {
public:
    using Listener = std::function<void(Args...)>;

    Event() = default;
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    /// Adds a listener for the life of the event.
    void Add(Listener listener) { Present().push_back(std::make_shared<Listener>(std::move(listener))); }

    /// Adds a listener that stays until the result is destroyed.
    [[nodiscard]] Subscription Connect(Listener listener)
    {
        auto slot = std::make_shared<Listener>(std::move(listener));
        Present().push_back(slot);
        return Subscription([slots = std::weak_ptr<Slots>(slots_), slot = std::weak_ptr<Listener>(slot)] {
            auto list = slots.lock();
            auto gone = slot.lock();
            if (!list || !gone) return;
            list->erase(std::remove(list->begin(), list->end(), gone), list->end());
            *gone = nullptr;
        });
    }

    /// Calls every listener that is connected at this moment and still is when its turn comes.
    void Raise(Args... args) const
    {
        if (!slots_) return;
        const Slots present = *slots_;
        for (const auto& slot : present) {
            // A copy: the listener may disconnect itself, which empties the slot under it.
            if (const Listener listener = *slot) listener(args...);
        }
    }

private:
    using Slots = std::vector<std::shared_ptr<Listener>>;
    Slots& Present()
    {
        if (!slots_) slots_ = std::make_shared<Slots>();
        return *slots_;
    }

    std::shared_ptr<Slots> slots_;  ///< Null until somebody listens: there may be very many events.
};

}  // namespace velmora
