// The controls of a window as plain data. The logic sets properties and listens to events; a view,
// if one is attached, shows the properties and raises the events. Without a view all of it works.
// Every measure is in twips (15 to a pixel of the desktop).
#pragma once

#include <deque>
#include <initializer_list>
#include <string>
#include <vector>

#include "platform/controls/Property.h"

namespace velmora {

using Twips = float;

/// Refuses a negative size.
void RefuseNegative(const Twips& size);

class Container;

/// What all controls share. A control registers with its container, which must outlive it.
class Control {
public:
    Control(Container& parent, std::string name);
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// Sets the position relative to the container's inner area, and the size.
    void Move(Twips left, Twips top, Twips width, Twips height);
    /// Asks for the keyboard focus. Throws ControlError while the control or anything around it is
    /// not visible or not enabled.
    void SetFocus();

    const std::string Name;
    Container& Parent;
    Property<Twips> Left;
    Property<Twips> Top;
    Property<Twips> Width{0, RefuseNegative};
    Property<Twips> Height{0, RefuseNegative};
    Property<bool> Visible{true};
    Property<bool> Enabled{true};
    /// Place in the keyboard's tab order of the window, from 0; -1: not in it.
    Property<int> TabIndex{-1};
    /// In a tab panel: the tab that the control stands on, from 0.
    Property<int> Page;
    /// The words that a screen reader says, where the control has no caption of its own.
    Property<std::string> AccessibleName;

    /// SetFocus was called and granted; the view moves the focus.
    Event<> FocusRequested;
};

/// Where the design of a window puts a control, and its place in the tab order (see Control::TabIndex).
struct Place {
    Control& control;
    Twips left, top, width, height;
    int tabIndex = -1;
};
void Arrange(std::initializer_list<Place> places);

/// Something that holds controls: a window, a frame, a tab panel. The later of two that overlap
/// stands in front.
class Container {
public:
    virtual ~Container() = default;
    /// True when it and everything around it is visible and enabled.
    virtual bool CanTakeFocus() const = 0;

    std::vector<Control*> Controls;
};

/// The keys that press a button from anywhere in its window.
struct ButtonKeys {
    bool Default = false;  ///< Enter.
    bool Cancel = false;   ///< Escape.
};

class CommandButton : public Control {
public:
    CommandButton(Container& parent, std::string name, std::string caption, ButtonKeys keys = {});

    Property<std::string> Caption;
    const ButtonKeys Keys;
    Event<> Click;
};

class CheckBox : public Control {
public:
    CheckBox(Container& parent, std::string name, std::string caption);

    Property<std::string> Caption;
    Property<int> Value;  ///< 1 ticked, 0 not.
};

class TextBox : public Control {
public:
    TextBox(Container& parent, std::string name, float fontPoints = 0);

    Property<std::string> Text;
    const float FontPoints;  ///< 0: the desktop's own size.
};

class Label : public Control {
public:
    Label(Container& parent, std::string name, std::string caption);

    Property<std::string> Caption;
};

/// A picture from the program's own resources.
class Picture : public Control {
public:
    Picture(Container& parent, std::string name, std::string resource);

    const std::string Resource;
};

class Frame : public Control, public Container {
public:
    using Control::Control;
    bool CanTakeFocus() const override;
};

/// A panel with tabs. Controls on it carry the number of their tab in `Page`.
class SSTab : public Control, public Container {
public:
    SSTab(Container& parent, std::string name, std::vector<std::string> captions);
    bool CanTakeFocus() const override;

    const std::vector<std::string> Captions;
    Property<Twips> TabHeight{300, RefuseNegative};
    /// The tab shown, from 0. Setting the tab that is shown already does nothing; any other raises
    /// Click with the tab shown before.
    Property<int> Tab;
    Event<int> Click;

private:
    int previous_ = 0;
};

struct Panel {
    Property<std::string> Text;
    Property<Twips> Width{0, RefuseNegative};
};

/// The line at the foot of a window. It keeps to the bottom edge and the width by itself.
class StatusBar : public Control {
public:
    StatusBar(Container& parent, std::string name, int panels);

    /// Panel i, counted from 1. Throws ControlError for any other.
    Panel& Panels(int i);
    int PanelCount() const { return static_cast<int>(panels_.size()); }

private:
    std::deque<Panel> panels_;
};

/// A clock that raises Tick every `Interval` milliseconds while it is enabled and the interval is
/// above 0. What drives it is attached from outside; a test raises Tick by hand.
struct Timer {
    Property<int> Interval;
    Property<bool> Enabled;
    Event<> Tick;
};

/// One entry of a menu; "-" as caption is a separator line.
struct MenuItem {
    MenuItem(std::string name, std::string caption, bool checkable = false, bool checked = false);

    const std::string Name;
    const std::string Caption;
    const bool Checkable;  ///< Shows a check mark when checked.
    Property<bool> Checked;
    Event<> Click;
    std::vector<MenuItem*> Children;
};

/// A window: the main one or a dialog. Width and Height are outer measures: the inner ones and a
/// fixed frame around them.
class Window : public Container {
public:
    static constexpr Twips kFrameWidth = 120;
    static constexpr Twips kFrameHeight = 810;

    bool CanTakeFocus() const override { return Visible(); }
    /// Sets the inner measures and the outer ones with them.
    void SetInnerSize(Twips width, Twips height);

    Property<std::string> Caption;
    /// The outer corner on the screen. X11 keeps to it; on Wayland no program can place its windows, and
    /// Left and Top say nothing.
    Property<Twips> Left;
    Property<Twips> Top;
    Property<Twips> Width{0, RefuseNegative};
    Property<Twips> Height{0, RefuseNegative};
    Property<Twips> ScaleWidth{0, RefuseNegative};   ///< Inner width; 0 while minimised.
    Property<Twips> ScaleHeight{0, RefuseNegative};  ///< Inner height; 0 while minimised.
    Property<bool> Visible;
    std::vector<MenuItem*> Menu;
    /// The control that has the focus when the window opens; none: the first in tab order.
    Control* FirstFocus = nullptr;

    Event<> Resize;          ///< The size changed, or the window was minimised or restored.
    Event<> CloseRequested;  ///< The close box or, in a dialog, Escape.
};

}  // namespace velmora
