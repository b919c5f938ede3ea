#include "platform/webkit/chrome/Downloads.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

// A page that starts more than this at once gets the rest refused.
constexpr std::size_t kMostDownloads = 20;
constexpr int kHighestList = 80;

/// The user's folder for downloads; the home folder where there is none.
std::string DownloadFolder()
{
    const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DOWNLOAD);
    return folder && g_file_test(folder, G_FILE_TEST_IS_DIR) ? folder : g_get_home_dir();
}

bool IsAttachment(WebKitURIResponse* response)
{
    SoupMessageHeaders* headers = webkit_uri_response_get_http_headers(response);
    char* disposition = nullptr;
    if (!headers || !soup_message_headers_get_content_disposition(headers, &disposition, nullptr)) return false;
    return g_ascii_strcasecmp(OwnedText(disposition).c_str(), "attachment") == 0;
}

/// Lets the session live until the engine has said that the download, which is being cancelled, is
/// over: one that outlives its session takes the program down.
void KeepUntilOver(WebKitDownload* download, WebKitNetworkSession* session)
{
    g_object_ref(session);
    // Given back after the engine's own work on the download, not in the middle of it.
    Connect(download, "finished", [session] { g_idle_add_once(g_object_unref, session); });
}

}  // namespace

bool IsForSaving(WebKitResponsePolicyDecision* decision)
{
    if (IsAttachment(webkit_response_policy_decision_get_response(decision))) return true;
    return !webkit_response_policy_decision_is_mime_type_supported(decision) &&
           webkit_response_policy_decision_is_main_frame_main_resource(decision);
}

Downloads::Downloads(WebKitNetworkSession* session, Dialogs& dialogs, Turns& turns)
    : session_(session), dialogs_(dialogs), turns_(turns), scroller_(Held(gtk_scrolled_window_new())),
      rows_(Held(gtk_box_new(GTK_ORIENTATION_VERTICAL, 2)))
{
    gtk_widget_set_name(scroller_.get(), "lstDownloads");
    gtk_widget_set_visible(scroller_.get(), FALSE);
    auto* scrolled = GTK_SCROLLED_WINDOW(scroller_.get());
    gtk_scrolled_window_set_policy(scrolled, GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(scrolled, TRUE);
    gtk_scrolled_window_set_max_content_height(scrolled, kHighestList);
    gtk_scrolled_window_set_child(scrolled, rows_.get());
    callbacks_.Connect(session, "download-started",
                       [this](WebKitNetworkSession*, WebKitDownload* download) { Take(download); });
}

Downloads::~Downloads()
{
    CloseChooser();
    for (Item& item : std::exchange(items_, {})) {
        KeepUntilOver(item.download.get(), session_);
        Cancel(item);
    }
}

void Downloads::Take(WebKitDownload* download)
{
    if (Started) Started(webkit_download_get_web_view(download));
    if (items_.size() >= kMostDownloads) {
        KeepUntilOver(download, session_);
        webkit_download_cancel(download);
        return;
    }
    Item& item = items_.emplace_back();
    item.download = Held(download);
    Follow(download);
}

void Downloads::Follow(WebKitDownload* download)
{
    callbacks_.Connect(download, "decide-destination", [this](WebKitDownload* of, const char* suggested) {
        Item* const item = Find(of);
        if (!item) return false;
        // The engine has taken folders and the like out of it.
        item->name = suggested && *suggested ? suggested : "download";
        item->waits = true;
        callbacks_.Later([this] { AskNext(); });
        return true;
    });
    callbacks_.Connect(download, "received-data", [this](WebKitDownload* of) {
        Item* const item = Find(of);
        if (item && item->row) item->row->Update();
    });
    callbacks_.Connect(download, "failed", [this](WebKitDownload* of, GError* error) {
        if (Item* const item = Find(of)) item->failure = error->message;
    });
    callbacks_.Connect(download, "finished", [this](WebKitDownload* of) { Finish(of); });
}

void Downloads::Cancel(Item& item)
{
    // Once only: the engine answers each time, and the second answer would find no download.
    if (!std::exchange(item.isCancelled, true)) webkit_download_cancel(item.download.get());
}

Downloads::Item* Downloads::Find(WebKitDownload* download)
{
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [download](const Item& item) { return item.download.get() == download; });
    return found == items_.end() ? nullptr : &*found;
}

void Downloads::AskNext()
{
    if (chooser_) return;
    const auto next = std::find_if(items_.begin(), items_.end(), [](const Item& item) { return item.waits; });
    if (next != items_.end()) ShowChooser(*next);
}

// From GTK 4.10 on another dialog takes the place of this one, which the GTK of Debian 12 does not have.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

void Downloads::ShowChooser(const Item& item)
{
    GtkRoot* root = gtk_widget_get_root(scroller_.get());
    chooser_ = Owned(gtk_file_chooser_native_new("Save File", root ? GTK_WINDOW(root) : nullptr,
                                                 GTK_FILE_CHOOSER_ACTION_SAVE, "_Save", "_Cancel"));
    asked_ = item.download.get();
    auto* chooser = GTK_FILE_CHOOSER(chooser_.get());
    const auto folder = Owned(g_file_new_for_path(DownloadFolder().c_str()));
    gtk_file_chooser_set_current_folder(chooser, folder.get(), nullptr);
    gtk_file_chooser_set_current_name(chooser, item.name.c_str());
    callbacks_.Connect(chooser, "response", [this](GtkNativeDialog*, int response) { Choose(response); });
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

void Downloads::Choose(int response)
{
    std::string path;
    if (response == GTK_RESPONSE_ACCEPT) {
        const auto file = Owned(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(chooser_.get())));
        if (file) path = OwnedText(g_file_get_path(file.get()));
    }
    Item* const item = Find(asked_);
    if (item) item->waits = false;
    callbacks_.Later([this] {
        CloseChooser();
        AskNext();
    });
    if (!item) return;
    if (path.empty()) {
        Cancel(*item);
    } else {
        Save(*item, path);
    }
}

G_GNUC_END_IGNORE_DEPRECATIONS

void Downloads::Save(Item& item, const std::string& path)
{
    WebKitDownload* const download = item.download.get();
    item.name = path;
    // The chooser has asked before it gave the name of a file that exists.
    webkit_download_set_allow_overwrite(download, g_file_test(path.c_str(), G_FILE_TEST_EXISTS));
    const std::string shown = OwnedText(g_filename_display_basename(path.c_str()));
    item.row = std::make_unique<DownloadRow>(GTK_BOX(rows_.get()), shown, download, [this, &item] { Cancel(item); });
    ShowList();
    webkit_download_set_destination(download, path.c_str());
}

void Downloads::CloseChooser()
{
    if (!chooser_) return;
    gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser_.get()));
    chooser_.reset();
    asked_ = nullptr;
}

void Downloads::Finish(WebKitDownload* download)
{
    Item* const item = Find(download);
    if (!item) return;
    const std::string shown = OwnedText(g_filename_display_name(item->name.empty() ? "The file" : item->name.c_str()));
    const std::string failure = item->failure;
    const bool isCancelled = item->isCancelled;
    if (asked_ == download) CloseChooser();
    items_.remove_if([item](const Item& other) { return &other == item; });
    ShowList();
    callbacks_.Later([this] { AskNext(); });
    if (isCancelled) return;
    turns_.Post([this, shown, failure] {
        if (failure.empty()) {
            dialogs_.MsgBox("The download is complete:\n" + shown, Buttons::Ok, Icon::Information, "Download");
        } else {
            dialogs_.MsgBox("The download has failed:\n" + shown + "\n" + failure + "\nFetch it from its page again.",
                            Buttons::Ok, Icon::Exclamation, "Download");
        }
    });
}

void Downloads::ShowList()
{
    gtk_widget_set_visible(scroller_.get(), gtk_widget_get_first_child(rows_.get()) != nullptr);
}

}  // namespace velmora
