#include "platform/desktop/WidgetViews.h"

#include <gdkmm/texture.h>
#include <glibmm/bytes.h>
#include <glibmm/error.h>
#include <gtk/gtk.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/picture.h>
#include <pangomm/attrlist.h>

#include <cmath>
#include <functional>

#include "desktop_files.h"
#include "platform/desktop/Accessible.h"
#include "platform/desktop/ButtonGap.h"
#include "platform/desktop/Caption.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

namespace {

// Border and padding of a button at both sides together, and its margin above and below; the style
// sheet sets them.
constexpr int kInsetAcross = 4;
constexpr int kInsetDown = 4;

// A check box narrower than this has room for its box only; its words are then left to a label.
constexpr int kNarrowestWithCaption = 40;

/// Calls a function when a view comes onto the screen, where its font is known, and at each new size of its
/// control.
class SizeWatch {
public:
    SizeWatch(Gtk::Widget& view, Control& control, const std::function<void()>& fit)
        : width_(control.Width.Changed.Connect(fit)), height_(control.Height.Changed.Connect(fit))
    {
        view.signal_map().connect(fit);
    }

private:
    Subscription width_, height_;
};

class ButtonView : public Gtk::Button {
public:
    explicit ButtonView(CommandButton& control) : control_(control), size_(*this, control, [this] { Fit(); })
    {
        add_css_class("command");
        const ButtonMargins margins = MarginsOf(control);
        set_margin_start(margins.left);
        set_margin_end(margins.right);
        label_.set_justify(Gtk::Justification::CENTER);
        set_child(label_);
        ShowCaption();
        signal_clicked().connect([this] { control_.Click.Raise(); });
        caption_ = control.Caption.Changed.Connect([this] { ShowCaption(); });
    }

private:
    void ShowCaption()
    {
        const Glib::ustring caption = DisplayText(control_.Caption());
        label_.set_text(caption);
        SetAccessibleName(*this, caption);
        Fit();
    }

    void Fit()
    {
        const Gdk::Rectangle place = PlaceOf(control_);
        const int margins = get_margin_start() + get_margin_end();
        FitCaption(label_, place.get_width() - margins - kInsetAcross, place.get_height() - kInsetDown);
    }

    CommandButton& control_;
    Gtk::Label label_;
    SizeWatch size_;
    Subscription caption_;
};

class CheckBoxView : public Gtk::CheckButton {
public:
    explicit CheckBoxView(CheckBox& control) : control_(control)
    {
        set_valign(Gtk::Align::CENTER);
        set_active(control.Value() == 1);
        ShowCaption();
        signal_toggled().connect([this] { control_.Value = get_active() ? 1 : 0; });
        caption_ = control.Caption.Changed.Connect([this] { ShowCaption(); });
        width_ = control.Width.Changed.Connect([this] { ShowCaption(); });
        value_ = control.Value.Changed.Connect([this] { set_active(control_.Value() == 1); });
    }

private:
    void ShowCaption()
    {
        const Glib::ustring caption = DisplayText(control_.Caption());
        const bool hasRoom = PlaceOf(control_).get_width() >= kNarrowestWithCaption;
        // An empty caption would still keep its distance from the box; only none at all takes no room.
        gtk_check_button_set_label(gobj(), hasRoom ? caption.c_str() : nullptr);
        SetAccessibleName(*this, caption);
    }

    CheckBox& control_;
    Subscription caption_, value_, width_;
};

class TextBoxView : public Gtk::Entry {
public:
    explicit TextBoxView(TextBox& control) : control_(control)
    {
        set_activates_default(true);
        set_width_chars(0);
        if (control.FontPoints > 0) SetFontSize(static_cast<double>(control.FontPoints));
        ShowText();
        signal_changed().connect([this] { TakeText(); });
        text_ = control.Text.Changed.Connect([this] { ShowText(); });
    }

private:
    void SetFontSize(double points)
    {
        Pango::AttrList attributes;
        auto size = Pango::Attribute::create_attr_size(static_cast<int>(std::round(points * Pango::SCALE)));
        attributes.insert(size);
        set_attributes(attributes);
    }

    void ShowText()
    {
        // The entry may not be able to hold the text as it is (it takes valid UTF-8 only). The control's own
        // text stays until the user edits.
        if (isTaking_) return;
        const Glib::ustring text = DisplayText(control_.Text());
        isShowing_ = true;
        set_text(text);
        isShowing_ = false;
        // Its length is limited, too. An edit of the beginning would throw away the rest unseen.
        const bool isWhole = get_text().bytes() == text.bytes();
        set_editable(isWhole);
        if (isWhole) {
            set_has_tooltip(false);
        } else {
            set_tooltip_text("This text is too long to be edited here. It is kept as it is.");
        }
    }

    void TakeText()
    {
        if (isShowing_) return;
        isTaking_ = true;
        control_.Text = get_text().raw();
        isTaking_ = false;
    }

    TextBox& control_;
    bool isShowing_ = false;  ///< The entry is taking the control's text, which is no edit.
    bool isTaking_ = false;   ///< The control is taking the entry's text, which needs no showing.
    Subscription text_;
};

class LabelView : public Gtk::Label {
public:
    explicit LabelView(velmora::Label& control) : control_(control), size_(*this, control, [this] { Fit(); })
    {
        set_xalign(0);
        set_yalign(0);
        ShowCaption();
        caption_ = control.Caption.Changed.Connect([this] { ShowCaption(); });
    }

private:
    void ShowCaption()
    {
        set_text(OneLine(control_.Caption()));
        Fit();
    }

    void Fit()
    {
        const Gdk::Rectangle place = PlaceOf(control_);
        FitCaption(*this, place.get_width(), place.get_height());
        // A field's name may be longer than its place; it can still be read as a tip.
        if (get_ellipsize() == Pango::EllipsizeMode::END) {
            set_tooltip_text(get_text());
        } else {
            set_has_tooltip(false);
        }
    }

    velmora::Label& control_;
    SizeWatch size_;
    Subscription caption_;
};

}  // namespace

Gtk::Button& MakeView(CommandButton& control) { return *Gtk::make_managed<ButtonView>(control); }

Gtk::Widget& MakeView(CheckBox& control) { return *Gtk::make_managed<CheckBoxView>(control); }

Gtk::Widget& MakeView(TextBox& control) { return *Gtk::make_managed<TextBoxView>(control); }

Gtk::Widget& MakeView(velmora::Label& control) { return *Gtk::make_managed<LabelView>(control); }

Gtk::Widget& MakeView(velmora::Picture& control)
{
    auto* picture = Gtk::make_managed<Gtk::Picture>();
    const std::string_view file = desktop_files::Find(control.Resource);
    if (file.empty()) return *picture;
    try {
        picture->set_paintable(Gdk::Texture::create_from_bytes(Glib::Bytes::create(file.data(), file.size())));
    } catch (const Glib::Error&) {
        // No reader for the format on this machine: the window does without its picture.
    }
    return *picture;
}

}  // namespace velmora
