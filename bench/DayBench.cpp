// What a day of use leaves behind in the program: the first row warms up, each further one stands for 100 navigations
// more. They record and fill forms, have pop-ups refused, meet frames and pages that leave while they are read.
// used_kb is what the program's heap holds; the library of the server, which lives in the same process, loses 1.6 KB
// with each of its connections, 25 in a row. Among the descriptors are the channels to living pages, one for each.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/socket.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "bench/BenchPage.h"

namespace velmora::bench {
namespace {

constexpr int kVisitsPerRow = 25;
constexpr int kNavigationsPerVisit = 4;
constexpr int kRows = 7;  // Of which the first warms up.

constexpr char kForm[] =
    "<!DOCTYPE html><form action='to.cgi' method='post'><input name='a'><input name='b'><input type='submit'></form>"
    "<iframe srcdoc='<form action=x><input name=c></form>'></iframe><iframe src='/frame.html'></iframe>";
constexpr char kPopups[] =
    "<!DOCTYPE html><iframe src='/frame.html'></iframe><script>window.open('/frame.html'); window.open('about:blank');"
    "</script>";
// Gone as soon as the program begins to read its thousand forms; its frame goes first.
constexpr char kLeaves[] =
    "<!DOCTYPE html><body><iframe src='/frame.html'></iframe><script>"
    "document.body.insertAdjacentHTML('beforeend', '<form action=x><input name=b></form>'.repeat(1e3));"
    "addEventListener('load', () => { setTimeout(() => { document.querySelector('iframe').remove();"
    "location.href = '/there.html'; }); });</script>";

/// The descriptors of the program; not the connections, which are the server's, whose library loses some.
double Descriptors()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<double>(std::count_if(begin(all), end(all), [](const auto& entry) {
        sockaddr address{};
        socklen_t size = sizeof address;
        return getsockname(std::stoi(entry.path().filename()), &address, &size) != 0 || address.sa_family == AF_UNIX;
    }));
}

double ResidentMegabytes()
{
    double all = 0;
    double resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void PutPages(BenchPage& page)
{
    page.Server().Page("/form.html", kForm);
    page.Server().Page("/frame.html", "<form action='f.cgi'><input name='f'></form>");
    page.Server().Page("/popups.html", kPopups);
    page.Server().Page("/leaves.html", kLeaves);
    page.Server().Page("/there.html", "<p>there</p>");
    page.Server().Page("/to.cgi", "<p>thank you</p>");
}

/// Goes to the page and sends its form by hand.
void Send(BenchPage& page, const std::string& path)
{
    page.Load(path);
    page.Script("document.querySelector('[type=submit]').click(), 1");
    RunUntil([&] { return !page.Server().Bodies("/to.cgi").empty(); });
    page.Server().ForgetRequests();
}

void Visit(BenchPage& page)
{
    frmBrowser& form = page.Form();
    Send(page, "/form.html");
    page.Load("/popups.html");
    page.Load("/leaves.html", "/there.html");
    page.Load("/form.html?other");
    if (page.Script("document.forms[0].a.value === 'filled' ? 1 : 0") == 0) throw std::runtime_error("not filled");
    if (form.ListView1.Count() != 1) throw std::runtime_error("not recorded");
    form.ListView1.Remove(form.ListView1.Item(1));
    page.Server().ForgetRequests();
}

void Day(benchmark::State& state)
{
    BenchPage& page = ThePage();
    frmBrowser& form = page.Form();
    if (state.range(0) == 1) {
        PutPages(page);
        frmBrowser::AddRecordItem(form.lvwPermanent, {.Type = kTypeForm,
                                                      .Session = "day",
                                                      .Url = page.Server().Url("/form.html?other"),
                                                      .Action = page.Server().Url("/to.cgi"),
                                                      .Postdata = "a=filled&b=x",
                                                      .Header = {},
                                                      .Frame = {}});
        form.mnuManualClick_Click();
        form.mnuAutoRecord_Click();
    }
    for (auto _ : state) {
        for (int i = 0; i < kVisitsPerRow; ++i) Visit(page);
    }
    const struct mallinfo2 heap = mallinfo2();
    state.counters["navigations"] = static_cast<double>(state.range(0)) * kVisitsPerRow * kNavigationsPerVisit;
    state.counters["used_kb"] = static_cast<double>(heap.uordblks + heap.hblkhd) / 1024;
    state.counters["resident_mb"] = ResidentMegabytes();
    state.counters["descriptors"] = Descriptors();
    if (state.range(0) < kRows) return;
    form.mnuAutoRecord_Click();
    form.mnuNoFill_Click();
    form.lvwPermanent.Remove(form.lvwPermanent.Item(form.lvwPermanent.Count()));
}

BENCHMARK(Day)->DenseRange(1, kRows)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace velmora::bench
