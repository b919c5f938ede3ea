#include "bench/BenchPage.h"

#include <cstdlib>
#include <stdexcept>

namespace velmora::bench {

std::string NewFolder()
{
    char pattern[] = "/tmp/velmora-bench-XXXXXX";
    const char* folder = mkdtemp(pattern);
    if (!folder) throw std::runtime_error("no folder for the records");
    return folder;
}

void RunUntil(const std::function<bool()>& condition)
{
    const auto limit = Clock::now() + std::chrono::seconds(30);
    const guint tick = g_timeout_add(
        10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    while (!condition() && Clock::now() < limit) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(tick);
    if (!condition()) throw std::runtime_error("the page did not come");
}

BenchPage& ThePage()
{
    static BenchPage page;
    return page;
}

BenchPage::BenchPage()
    : folder_(NewFolder()),
      program_(desktop_, dialogs_,
               {.programFolder = folder_, .agentFolder = VELMORA_AGENT_FOLDER, .dataFolder = {}, .cacheFolder = {}})
{
    // Behind the program's own handler.
    Form().wbMyBrowser.DocumentComplete.Add([this](BrowserObject&, const std::string& url) {
        if (const auto completed = std::exchange(completed_, nullptr)) completed(url);
    });
    // The text cursor would have the window drawn anew at each of its pictures.
    g_object_set(gtk_settings_get_default(), "gtk-cursor-blink", FALSE, nullptr);
    bool hasStarted = false;
    completed_ = [&](const std::string&) { hasStarted = true; };
    program_.Start();
    RunUntil([&] { return hasStarted; });
    g_signal_add_emission_hook(g_signal_lookup("user-message-received", WEBKIT_TYPE_WEB_VIEW), 0, NoteArrival, this,
                               nullptr);
    Form().mnuPromptFill_Click();
    Form().mnuNoFill_Click();
}

gboolean BenchPage::NoteArrival(GSignalInvocationHint*, guint, const GValue* values, gpointer self)
{
    auto* message = WEBKIT_USER_MESSAGE(g_value_get_object(values + 1));
    if (std::string(webkit_user_message_get_name(message)) == wire::kFinished) {
        static_cast<BenchPage*>(self)->arrived_ = Clock::now();
    }
    return TRUE;
}

std::chrono::duration<double> BenchPage::Load(const std::string& path, const std::string& last)
{
    bool isDone = false;
    Clock::time_point handled;
    const std::string wanted = server_.Url(last);
    const std::function<void(const std::string&)> watch = [&](const std::string& url) {
        handled = Clock::now();
        isDone = url == wanted;
        if (!isDone) completed_ = watch;
    };
    completed_ = watch;
    Form().txtUrl.Text = server_.Url(path);
    Form().cmdPlayback_Click();
    RunUntil([&] { return isDone; });
    return handled - arrived_;
}

void BenchPage::AwaitPicture()
{
    GtkWidget* const widget = GTK_WIDGET(View());
    bool isDrawn = false;
    const gulong handler = g_signal_connect_swapped(gtk_widget_get_frame_clock(widget), "after-paint",
                                                    G_CALLBACK(+[](bool* drawn) { *drawn = true; }), &isDrawn);
    gtk_widget_queue_draw(GTK_WIDGET(gtk_widget_get_root(widget)));
    RunUntil([&] { return isDrawn; });
    g_signal_handler_disconnect(gtk_widget_get_frame_clock(widget), handler);
}

double BenchPage::Script(const std::string& script)
{
    struct Outcome {
        bool done = false;
        double value = 0;
    } outcome;
    webkit_web_view_evaluate_javascript(
        program_.Engine().View(), script.c_str(), -1, nullptr, nullptr, nullptr,
        [](GObject* view, GAsyncResult* result, gpointer data) {
            auto& filled = *static_cast<Outcome*>(data);
            JSCValue* value = webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
            if (value) {
                filled.value = jsc_value_to_double(value);
                g_object_unref(value);
            }
            filled.done = true;
        },
        &outcome);
    RunUntil([&] { return outcome.done; });
    return outcome.value;
}

}  // namespace velmora::bench
