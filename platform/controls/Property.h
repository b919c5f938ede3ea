// Observable properties, of which controls are made.
#pragma once

#include <stdexcept>
#include <utility>

#include "platform/controls/Event.h"

namespace velmora {

/// What a control throws when it is given something that it cannot take.
class ControlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One value of a control. Reading is a call, `Caption()`; writing is an assignment,
/// `Caption = "Go"`. A check, if there is one, refuses a value by throwing ControlError before
/// anything changes. `Changed` is raised after a write that really changed the value.
template <class T>
class Property {
public:
    using Check = void (*)(const T&);

    explicit Property(T initial = {}, Check check = nullptr) : value_(std::move(initial)), check_(check) {}

    const T& operator()() const { return value_; }

    Property& operator=(T value)
    {
        if (check_) check_(value);
        if (value == value_) return *this;
        value_ = std::move(value);
        Changed.Raise();
        return *this;
    }
    Property& operator=(const Property&) = delete;
    Property(const Property&) = delete;

    Event<> Changed;

private:
    T value_;
    Check check_;
};

}  // namespace velmora
