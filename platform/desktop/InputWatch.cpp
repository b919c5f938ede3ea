#include "platform/desktop/InputWatch.h"

#include <gtkmm/button.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/eventcontrollerlegacy.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

constexpr auto kTyping = 1s;  // A user who pressed a key so lately is still typing.
constexpr auto kProtection = 500ms;
constexpr auto kLongestPause = 1s;  // Between a key and its repetition.

template <class Controller>
Glib::RefPtr<Controller> AddEarly(Gtk::Window& window)
{
    auto controller = Controller::create();
    controller->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    window.add_controller(controller);
    return controller;
}

bool IsPress(const Glib::RefPtr<const Gdk::Event>& event)
{
    return event->get_event_type() == Gdk::Event::Type::BUTTON_PRESS;
}

}  // namespace

void InputWatch::Observe(Gtk::Window& window)
{
    const auto keys = AddEarly<Gtk::EventControllerKey>(window);
    const auto pressed = [this, &window](guint key, guint code, Gdk::ModifierType) {
        NoteKey(window, key, code);
        return false;
    };
    keys->signal_key_pressed().connect(pressed, false);
    keys->signal_key_released().connect([this](guint, guint code, Gdk::ModifierType) { down_.erase(code); });
    const auto presses = AddEarly<Gtk::EventControllerLegacy>(window);
    const auto noted = [this](const Glib::RefPtr<const Gdk::Event>& event) {
        if (IsPress(event)) NoteChoice();
        return false;
    };
    presses->signal_event().connect(noted, false);
}

void InputWatch::NoteKey(const Gtk::Window& window, guint key, guint code)
{
    down_[code] = Now();
    const bool isEnter = key == GDK_KEY_Return || key == GDK_KEY_KP_Enter;
    const bool pressesDefault = isEnter && window.get_default_widget();
    const bool isChoice = pressesDefault || dynamic_cast<const Gtk::Button*>(window.get_focus());
    lastTyped_ = isChoice ? Time() : Now();
}

bool InputWatch::IsHeld(guint code)
{
    const auto key = down_.find(code);
    if (key == down_.end()) return false;
    // Where it was let go may have gone to another window.
    const bool isHeld = Now() - key->second < kLongestPause;
    if (isHeld) {
        key->second = Now();
    } else {
        down_.erase(key);
    }
    return isHeld;
}

void InputWatch::Protect(Gtk::Window& box)
{
    const bool isTyping = lastTyped_ != Time() && Now() - lastTyped_ < kTyping;
    const Time end = isTyping ? Now() + kProtection : Time();
    const auto keys = AddEarly<Gtk::EventControllerKey>(box);
    keys->signal_key_pressed().connect(
        [this, end](guint, guint code, Gdk::ModifierType) { return IsHeld(code) || Now() < end; }, false);
    keys->signal_key_released().connect([this](guint, guint code, Gdk::ModifierType) { down_.erase(code); });
    const auto presses = AddEarly<Gtk::EventControllerLegacy>(box);
    presses->signal_event().connect(
        [this, end](const Glib::RefPtr<const Gdk::Event>& event) { return IsPress(event) && Now() < end; }, false);
}

}  // namespace velmora
