#include "platform/webkit/chrome/DownloadRow.h"

#include <cstdint>
#include <utility>

namespace velmora {

namespace {

constexpr int kGap = 6;
constexpr int kWidestName = 40;

std::string SizeText(std::uint64_t bytes) { return OwnedText(g_format_size(bytes)); }

}  // namespace

DownloadRow::DownloadRow(GtkBox* parent, const std::string& name, WebKitDownload* download,
                         std::function<void()> cancel)
    : parent_(parent), download_(download), row_(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kGap)),
      progress_(gtk_progress_bar_new())
{
    GtkWidget* label = gtk_label_new(name.c_str());
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_MIDDLE);
    gtk_label_set_max_width_chars(GTK_LABEL(label), kWidestName);
    gtk_label_set_single_line_mode(GTK_LABEL(label), TRUE);
    gtk_box_append(GTK_BOX(row_), label);

    gtk_progress_bar_set_show_text(GTK_PROGRESS_BAR(progress_), TRUE);
    gtk_widget_set_hexpand(progress_, TRUE);
    gtk_widget_set_valign(progress_, GTK_ALIGN_CENTER);
    gtk_accessible_update_property(GTK_ACCESSIBLE(progress_), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
    gtk_box_append(GTK_BOX(row_), progress_);

    GtkWidget* button = gtk_button_new_with_label("Cancel");
    gtk_widget_set_name(button, "cmdCancelDownload");
    gtk_widget_add_css_class(button, "command");
    callbacks_.Connect(button, "clicked", std::move(cancel));
    gtk_box_append(GTK_BOX(row_), button);
    gtk_box_append(parent_, row_);
    Update();
}

DownloadRow::~DownloadRow() { gtk_box_remove(parent_, row_); }

void DownloadRow::Update()
{
    WebKitURIResponse* response = webkit_download_get_response(download_);
    const std::uint64_t whole = response ? webkit_uri_response_get_content_length(response) : 0;
    const std::uint64_t received = webkit_download_get_received_data_length(download_);
    std::string text = SizeText(received);
    if (whole > 0) {
        gtk_progress_bar_set_fraction(GTK_PROGRESS_BAR(progress_), webkit_download_get_estimated_progress(download_));
        text += " of " + SizeText(whole);
    } else {
        gtk_progress_bar_pulse(GTK_PROGRESS_BAR(progress_));
    }
    gtk_progress_bar_set_text(GTK_PROGRESS_BAR(progress_), text.c_str());
}

}  // namespace velmora
