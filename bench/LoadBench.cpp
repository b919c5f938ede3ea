// What the page agent adds to the load of a page.
//
// The same page is loaded by the program and by a bare view of the engine, in turn. The page tells
// both times itself: when its load event came, and when it was first on the screen after that, which
// in the program comes after the reading of the finished document.
#include <benchmark/benchmark.h>

#include "bench/BenchPage.h"

namespace velmora::bench {
namespace {

struct Times {
    double load = 0;
    double shown = 0;
};

constexpr char kClock[] =
    "<script>addEventListener('load', () => { const load = performance.now(); requestAnimationFrame(() =>"
    "setTimeout(() => { document.title = load + ' ' + performance.now(); })); });</script>";

std::string LongPage()
{
    std::string html = std::string("<!DOCTYPE html>") + kClock;
    while (html.size() < (std::size_t{2} << 20)) {
        html += "<p>Some words of text with <b>marks</b> in it, again and again.</p>\n";
    }
    return html;
}

std::string PageOfElements()
{
    std::string html = std::string("<!DOCTYPE html>") + kClock;
    for (int i = 0; i < 1000; ++i) html += "<div><p><a href='#'>x</a></p><i></i><b></b></div>";
    return html;
}

/// The title that a view shows once the page has told its times.
Times TimesOf(WebKitWebView* view)
{
    Times times;
    RunUntil([&] {
        const char* title = webkit_web_view_get_title(view);
        return title && sscanf(title, "%lf %lf", &times.load, &times.shown) == 2;
    });
    return times;
}

/// The engine without the program's agent, in a window of the same size.
class BareView {
public:
    BareView()
    {
        WebKitWebContext* context = webkit_web_context_new();
        WebKitNetworkSession* session = webkit_network_session_new_ephemeral();
        view_ = WEBKIT_WEB_VIEW(
            g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context, "network-session", session, nullptr));
        window_ = gtk_window_new();
        gtk_window_set_default_size(GTK_WINDOW(window_), 849, 560);
        gtk_window_set_child(GTK_WINDOW(window_), GTK_WIDGET(view_));
        gtk_window_present(GTK_WINDOW(window_));
        g_object_unref(session);
        g_object_unref(context);
    }
    ~BareView() { gtk_window_destroy(GTK_WINDOW(window_)); }
    BareView(const BareView&) = delete;
    BareView& operator=(const BareView&) = delete;

    Times Load(const std::string& url)
    {
        webkit_web_view_load_uri(view_, url.c_str());
        return TimesOf(view_);
    }

private:
    WebKitWebView* view_;
    GtkWidget* window_;
};

void LoadPage(benchmark::State& state, const std::string& html)
{
    BenchPage& page = ThePage();
    BareView bare;
    page.Server().Page("/page.html", html);
    Times program;
    Times engine;
    int visit = 0;
    for (auto _ : state) {
        const std::string path = "/page.html?" + std::to_string(++visit);
        const Times alone = bare.Load(page.Server().Url(path));
        page.Load(path);
        const Times with = TimesOf(page.View());
        engine.load += alone.load;
        engine.shown += alone.shown;
        program.load += with.load;
        program.shown += with.shown;
        state.SetIterationTime(with.load / 1000);
    }
    const auto rounds = static_cast<double>(state.iterations());
    state.counters["bare_ms"] = engine.load / rounds;
    state.counters["ratio"] = program.load / engine.load;
    state.counters["bare_shown_ms"] = engine.shown / rounds;
    state.counters["shown_ratio"] = program.shown / engine.shown;
}

void LoadLongPage(benchmark::State& state) { LoadPage(state, LongPage()); }
void LoadManyElements(benchmark::State& state) { LoadPage(state, PageOfElements()); }

BENCHMARK(LoadLongPage)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);
BENCHMARK(LoadManyElements)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(60);

}  // namespace
}  // namespace velmora::bench
