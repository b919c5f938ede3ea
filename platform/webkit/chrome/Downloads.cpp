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
    const bool isAttachment = g_ascii_strcasecmp(disposition, "attachment") == 0;
    g_free(disposition);
    return isAttachment;
}

/// Lets the session live until the engine has said that the download, which is being cancelled, is
/// over: one that outlives its session takes the program down.
void KeepUntilOver(WebKitDownload* download, WebKitNetworkSession* session)
{
    const auto over = +[](WebKitDownload*, gpointer held) {
        // Not in the middle of the engine's own work on the download.
        g_idle_add_once([](gpointer gone) { g_object_unref(gone); }, held);
    };
    g_signal_connect(download, "finished", G_CALLBACK(over), g_object_ref(session));
}

}  // namespace

bool IsForSaving(WebKitResponsePolicyDecision* decision)
{
    if (IsAttachment(webkit_response_policy_decision_get_response(decision))) return true;
    return !webkit_response_policy_decision_is_mime_type_supported(decision) &&
           webkit_response_policy_decision_is_main_frame_main_resource(decision);
}

Downloads::Downloads(WebKitNetworkSession* session, Dialogs& dialogs, Turns& turns)
    : session_(session), dialogs_(dialogs), turns_(turns), scroller_(gtk_scrolled_window_new()),
      rows_(gtk_box_new(GTK_ORIENTATION_VERTICAL, 2))
{
    g_object_ref_sink(scroller_);
    g_object_ref_sink(rows_);
    gtk_widget_set_name(scroller_, "lstDownloads");
    gtk_widget_set_visible(scroller_, FALSE);
    auto* scrolled = GTK_SCROLLED_WINDOW(scroller_);
    gtk_scrolled_window_set_policy(scrolled, GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(scrolled, TRUE);
    gtk_scrolled_window_set_max_content_height(scrolled, kHighestList);
    gtk_scrolled_window_set_child(scrolled, rows_);
    callbacks_.Connect(
        session, "download-started",
        G_CALLBACK(+[](WebKitNetworkSession*, WebKitDownload* download, Downloads* self) { self->Take(download); }),
        this);
}

Downloads::~Downloads()
{
    CloseChooser();
    for (Item& item : items_) {
        g_signal_handlers_disconnect_by_data(item.download.get(), this);
        KeepUntilOver(item.download.get(), session_);
        Cancel(item);
    }
    items_.clear();
    g_object_unref(rows_);
    g_object_unref(scroller_);
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
    item.download = {WEBKIT_DOWNLOAD(g_object_ref(download)), g_object_unref};
    Connect(item);
}

void Downloads::Connect(Item& item)
{
    const auto decide = +[](WebKitDownload* download, const char* suggested, Downloads* self) -> gboolean {
        Item* const named = self->Find(download);
        if (!named) return FALSE;
        // The engine has taken folders and the like out of it.
        named->name = suggested && *suggested ? suggested : "download";
        named->waits = true;
        self->callbacks_.Later([self] { self->AskNext(); });
        return TRUE;
    };
    const auto received = +[](WebKitDownload* download, guint64, Downloads* self) {
        Item* const running = self->Find(download);
        if (running && running->row) running->row->Update();
    };
    const auto failed = +[](WebKitDownload* download, GError* error, Downloads* self) {
        Item* const ended = self->Find(download);
        if (!ended) return;
        ended->failure = error->message;
    };
    const auto finished = +[](WebKitDownload* download, Downloads* self) { self->Finish(download); };
    WebKitDownload* const download = item.download.get();
    callbacks_.Connect(download, "decide-destination", G_CALLBACK(decide), this);
    callbacks_.Connect(download, "received-data", G_CALLBACK(received), this);
    callbacks_.Connect(download, "failed", G_CALLBACK(failed), this);
    callbacks_.Connect(download, "finished", G_CALLBACK(finished), this);
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

void Downloads::ShowChooser(const Item& item)
{
    GtkRoot* root = gtk_widget_get_root(scroller_);
    chooser_ = gtk_file_chooser_native_new("Save File", root ? GTK_WINDOW(root) : nullptr, GTK_FILE_CHOOSER_ACTION_SAVE,
                                           "_Save", "_Cancel");
    asked_ = item.download.get();
    GFile* folder = g_file_new_for_path(DownloadFolder().c_str());
    gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(chooser_), folder, nullptr);
    g_object_unref(folder);
    gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(chooser_), item.name.c_str());
    callbacks_.Connect(chooser_, "response",
                       G_CALLBACK(+[](GtkNativeDialog*, int response, Downloads* self) { self->Choose(response); }),
                       this);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser_));
}

void Downloads::Choose(int response)
{
    GFile* file = response == GTK_RESPONSE_ACCEPT ? gtk_file_chooser_get_file(GTK_FILE_CHOOSER(chooser_)) : nullptr;
    Item* const item = Find(asked_);
    if (item) item->waits = false;
    callbacks_.Later([this] {
        CloseChooser();
        AskNext();
    });
    if (item) Save(*item, file);
    if (file) g_object_unref(file);
}

void Downloads::Save(Item& item, GFile* file)
{
    char* path = file ? g_file_get_path(file) : nullptr;
    WebKitDownload* const download = item.download.get();
    if (path) {
        item.name = path;
        // The chooser has asked before it gave the name of a file that exists.
        webkit_download_set_allow_overwrite(download, g_file_test(path, G_FILE_TEST_EXISTS));
        char* shown = g_filename_display_basename(path);
        item.row = std::make_unique<DownloadRow>(GTK_BOX(rows_), shown, download, [this, &item] { Cancel(item); });
        g_free(shown);
        ShowList();
        webkit_download_set_destination(download, path);
    } else {
        Cancel(item);
    }
    g_free(path);
}

void Downloads::CloseChooser()
{
    if (!chooser_) return;
    gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser_));
    g_clear_object(&chooser_);
    asked_ = nullptr;
}

void Downloads::Finish(WebKitDownload* download)
{
    Item* const item = Find(download);
    if (!item) return;
    char* name = g_filename_display_name(item->name.empty() ? "The file" : item->name.c_str());
    const std::string shown = name;
    g_free(name);
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
            dialogs_.MsgBox("The download has failed:\n" + shown + "\n" + failure, Buttons::Ok, Icon::Exclamation,
                            "Download");
        }
    });
}

void Downloads::ShowList() { gtk_widget_set_visible(scroller_, gtk_widget_get_first_child(rows_) != nullptr); }

}  // namespace velmora
