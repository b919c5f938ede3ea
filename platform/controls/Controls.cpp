#include "platform/controls/Controls.h"

#include <utility>

namespace velmora {

void RefuseNegative(const Twips& size)
{
    // A size that is no number fails the comparison and is refused as well.
    if (!(size >= 0)) throw ControlError("a control's size cannot be negative");
}

Control::Control(Container& parent, std::string name) : Name(std::move(name)), Parent(parent)
{
    parent.Controls.push_back(this);
}

void Control::Move(Twips left, Twips top, Twips width, Twips height)
{
    Left = left;
    Top = top;
    Width = width;
    Height = height;
}

void Control::SetFocus()
{
    if (!Visible() || !Enabled() || !Parent.CanTakeFocus()) {
        throw ControlError(Name + " cannot take the focus now");
    }
    FocusRequested.Raise();
}

void Arrange(std::initializer_list<Place> places)
{
    for (const Place& place : places) {
        place.control.Move(place.left, place.top, place.width, place.height);
        place.control.TabIndex = place.tabIndex;
    }
}

CommandButton::CommandButton(Container& parent, std::string name, std::string caption, ButtonKeys keys)
    : Control(parent, std::move(name)), Caption(std::move(caption)), Keys(keys)
{
}

CheckBox::CheckBox(Container& parent, std::string name, std::string caption)
    : Control(parent, std::move(name)), Caption(std::move(caption))
{
}

TextBox::TextBox(Container& parent, std::string name, float fontPoints)
    : Control(parent, std::move(name)), FontPoints(fontPoints)
{
}

Label::Label(Container& parent, std::string name, std::string caption)
    : Control(parent, std::move(name)), Caption(std::move(caption))
{
}

Picture::Picture(Container& parent, std::string name, std::string resource)
    : Control(parent, std::move(name)), Resource(std::move(resource))
{
}

bool Frame::CanTakeFocus() const { return Visible() && Enabled() && Parent.CanTakeFocus(); }

SSTab::SSTab(Container& parent, std::string name, std::vector<std::string> captions)
    : Control(parent, std::move(name)), Captions(std::move(captions))
{
    Tab.Changed.Add([this] {
        const int before = std::exchange(previous_, Tab());
        Click.Raise(before);
    });
}

bool SSTab::CanTakeFocus() const { return Visible() && Enabled() && Parent.CanTakeFocus(); }

StatusBar::StatusBar(Container& parent, std::string name, int panels)
    : Control(parent, std::move(name)), panels_(static_cast<std::size_t>(panels))
{
}

Panel& StatusBar::Panels(int i)
{
    if (i < 1 || i > PanelCount()) throw ControlError("no such status panel");
    return panels_[static_cast<std::size_t>(i - 1)];
}

MenuItem::MenuItem(std::string name, std::string caption, bool checkable, bool checked)
    : Name(std::move(name)), Caption(std::move(caption)), Checkable(checkable), Checked(checked)
{
}

void Window::SetInnerSize(Twips width, Twips height)
{
    ScaleWidth = width;
    ScaleHeight = height;
    Width = width + kFrameWidth;
    Height = height + kFrameHeight;
}

}  // namespace velmora
