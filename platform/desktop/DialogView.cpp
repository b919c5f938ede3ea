#include "platform/desktop/DialogView.h"

#include <algorithm>

#include <gtkmm/eventcontrollerkey.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/ClientArea.h"
#include "platform/desktop/DisplayText.h"

namespace velmora {

DialogView::DialogView(velmora::Window& dialog) : dialog_(dialog), place_(window_, dialog)
{
    SetAccessibleRole(window_, Gtk::Accessible::Role::DIALOG);
    window_.set_title(OneLine(dialog.Caption()));
    window_.add_css_class("velmora");
    window_.add_css_class("dialog");
    window_.set_resizable(false);
    window_.set_modal(true);
    window_.set_child(*Gtk::make_managed<ClientArea>(dialog, context_, true));
    if (context_.defaultButton) window_.set_default_widget(*context_.defaultButton);

    caption_ = dialog.Caption.Changed.Connect([this] { window_.set_title(OneLine(dialog_.Caption())); });
    const auto close = [this] {
        Close();
        return true;
    };
    window_.signal_close_request().connect(close, false);
    auto keys = Gtk::EventControllerKey::create();
    const auto escape = [this](guint key, guint, Gdk::ModifierType) {
        if (key != GDK_KEY_Escape) return false;
        OnEscape();
        return true;
    };
    keys->signal_key_pressed().connect(escape, false);
    window_.add_controller(keys);
}

void DialogView::Show(Gtk::Window* parent)
{
    if (parent) window_.set_transient_for(*parent);
    FocusFirst();
    window_.present();
}

void DialogView::FocusFirst()
{
    if (dialog_.FirstFocus) {
        if (Gtk::Widget* widget = context_.Find(*dialog_.FirstFocus)) widget->grab_focus();
        return;
    }
    for (const FocusStop& stop : context_.TabOrder()) {
        if (stop.control->Visible() && stop.control->Enabled() && stop.control->Parent.CanTakeFocus()) {
            stop.widget->grab_focus();
            return;
        }
    }
}

void DialogView::Close()
{
    dialog_.CloseRequested.Raise();
    dialog_.Visible = false;
}

void DialogView::OnEscape()
{
    CommandButton* const cancel = context_.cancelButton;
    if (cancel && cancel->Visible() && cancel->Enabled()) {
        cancel->Click.Raise();
    } else {
        Close();
    }
}

}  // namespace velmora
