#include "platform/webkit/chrome/FindBar.h"

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
    AddButton("cmdFindNext", "Next", G_CALLBACK(+[](GtkWidget*, FindBar* self) { self->Step(true); }));
    AddButton("cmdFindPrevious", "Previous", G_CALLBACK(+[](GtkWidget*, FindBar* self) { self->Step(false); }));
    AddButton("cmdFindClose", "Close", G_CALLBACK(+[](GtkWidget*, FindBar* self) { self->Close(); }));
    gtk_widget_set_name(outcome_, "lblFind");
    gtk_box_append(GTK_BOX(row_), outcome_);

    g_signal_connect_swapped(text_, "changed", G_CALLBACK(+[](FindBar* self) { self->Search(); }), this);
    g_signal_connect_swapped(text_, "activate", G_CALLBACK(+[](FindBar* self) { self->Step(true); }), this);
    // The view may outlive the row.
    const auto found = +[](GtkLabel* outcome, guint) { gtk_label_set_text(outcome, ""); };
    const auto missed = +[](GtkLabel* outcome) { gtk_label_set_text(outcome, "Not found"); };
    g_signal_connect_object(finder_, "found-text", G_CALLBACK(found), outcome_, G_CONNECT_SWAPPED);
    g_signal_connect_object(finder_, "failed-to-find-text", G_CALLBACK(missed), outcome_, G_CONNECT_SWAPPED);
}

void FindBar::AddButton(const char* name, const char* caption, GCallback pressed)
{
    GtkWidget* button = gtk_button_new_with_label(caption);
    gtk_widget_set_name(button, name);
    gtk_widget_add_css_class(button, "command");
    g_signal_connect(button, "clicked", pressed, this);
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
