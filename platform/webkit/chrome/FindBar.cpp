#include "platform/webkit/chrome/FindBar.h"

#include <utility>

namespace velmora {

namespace {

constexpr int kGap = 4;
constexpr int kWidestText = 24;
constexpr guint kMostPlaces = 1000;

}  // namespace

FindBar::FindBar(WebKitWebView* view)
    : view_(view), finder_(webkit_web_view_get_find_controller(view)),
      row_(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kGap)), text_(gtk_entry_new()), outcome_(gtk_label_new(nullptr))
{
    gtk_widget_set_visible(row_, FALSE);
    gtk_widget_set_name(text_, "txtFind");
    gtk_editable_set_width_chars(GTK_EDITABLE(text_), kWidestText);
    gtk_accessible_update_property(GTK_ACCESSIBLE(text_), GTK_ACCESSIBLE_PROPERTY_LABEL, "Find in the page", -1);
    gtk_box_append(GTK_BOX(row_), gtk_label_new("Find:"));
    gtk_box_append(GTK_BOX(row_), text_);
    AddButton("cmdFindNext", "Next", [this] { Step(true); });
    AddButton("cmdFindPrevious", "Previous", [this] { Step(false); });
    AddButton("cmdFindClose", "Close", [this] { Close(); });
    gtk_widget_set_name(outcome_, "lblFind");
    gtk_accessible_update_property(GTK_ACCESSIBLE(outcome_), GTK_ACCESSIBLE_PROPERTY_LABEL, "", -1);
    gtk_box_append(GTK_BOX(row_), outcome_);

    callbacks_.Connect(text_, "changed", [this] { Search(); });
    callbacks_.Connect(text_, "activate", [this] { Step(true); });
    // The view may outlive the row.
    auto* outcome = GTK_LABEL(outcome_);
    Connect(
        finder_, "found-text", [outcome] { gtk_label_set_text(outcome, ""); }, outcome);
    Connect(
        finder_, "failed-to-find-text", [outcome] { gtk_label_set_text(outcome, "Not found"); }, outcome);
}

void FindBar::AddButton(const char* name, const char* caption, Callbacks::Action pressed)
{
    GtkWidget* button = gtk_button_new_with_label(caption);
    gtk_widget_set_name(button, name);
    gtk_widget_add_css_class(button, "command");
    callbacks_.Connect(button, "clicked", std::move(pressed));
    gtk_box_append(GTK_BOX(row_), button);
}

void FindBar::Open()
{
    gtk_widget_set_visible(row_, TRUE);
    gtk_widget_grab_focus(text_);
    Search();
}

void FindBar::Close()
{
    gtk_widget_set_visible(row_, FALSE);
    webkit_find_controller_search_finish(finder_);
    gtk_widget_grab_focus(GTK_WIDGET(view_));
}

void FindBar::Step(bool isForward)
{
    if (*gtk_editable_get_text(GTK_EDITABLE(text_)) == '\0' || !IsOpen()) {
        Open();
    } else if (isForward) {
        webkit_find_controller_search_next(finder_);
    } else {
        webkit_find_controller_search_previous(finder_);
    }
}

void FindBar::Search()
{
    const char* text = gtk_editable_get_text(GTK_EDITABLE(text_));
    gtk_label_set_text(GTK_LABEL(outcome_), "");
    if (*text == '\0') {
        webkit_find_controller_search_finish(finder_);
        return;
    }
    webkit_find_controller_search(finder_, text, WEBKIT_FIND_OPTIONS_CASE_INSENSITIVE | WEBKIT_FIND_OPTIONS_WRAP_AROUND,
                                  kMostPlaces);
}

}  // namespace velmora
