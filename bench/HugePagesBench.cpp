// What a page of monstrous size does to the window: it is loaded with a record for it, its form is sent and
// recorded. "Time" is that of the whole visit; held_ms the longest time for which the main loop stood still,
// grown_mb what the program has kept of ten such visits.
#include <benchmark/benchmark.h>

#include <fstream>

#include "bench/BenchPage.h"
#include "tests/support/Heartbeat.h"

namespace velmora::bench {
namespace {

double ResidentMegabytes()
{
    double all = 0;
    double resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

/// Pages by their names. Each has a form that goes to to.cgi and begins with the field "a".
struct HugePage {
    const char* name;
    const char* script;  ///< What makes it huge; `form` is the form.
};

constexpr HugePage kPages[] = {
    {"Plain", ""},
    {"Forms20000", "document.body.insertAdjacentHTML('beforeend', '<form action=x><input name=b></form>'.repeat(2e4))"},
    {"Elements10000", "form.insertAdjacentHTML('beforeend', '<input name=b>'.repeat(1e4))"},
    {"BoxesThatFollow10000",
     "form.insertAdjacentHTML('beforeend', Array.from({ length: 1e4 }, (_, i) =>"
     "`<input type=checkbox name=b${i} value=false>`).join(''))"},
    {"Options100000", "form.insertAdjacentHTML('beforeend', '<select name=b>' + '<option>o'.repeat(1e5))"},
    {"Attribute10MB", "form.insertAdjacentHTML('afterend', `<form action='${'x'.repeat(1e7)}'><input name=b></form>`)"},
    {"Value10MB", "form.b.value = 'x'.repeat(1e7)"},
    {"Frames300",
     "document.body.insertAdjacentHTML('beforeend', '<iframe srcdoc=\"<form><input name=b></form>\"></iframe>'"
     ".repeat(3e2))"},
    {"Frames1000",
     "document.body.insertAdjacentHTML('beforeend', '<iframe srcdoc=\"<form><input name=b></form>\"></iframe>'"
     ".repeat(1e3))"},
    {"Names1MB",
     "for (let i = 0; i < 5; ++i) form.append(Object.assign(document.createElement('input'),"
     "{ name: i + 'x'.repeat(1e6) }))"},
    {"Changing",
     "setInterval(() => { form.append(document.createElement('input')); form.lastChild.name = 'c';"
     "if (form.length > 50) form.lastChild.remove(); })"},
    {"NeverAtRest", "setInterval(() => { document.body.append(new Text('.')); }, 5)"},
};

RecordItem RecordFor(const std::string& url, const std::string& action)
{
    return {.Type = kTypeForm,
            .Session = "huge",
            .Url = url,
            .Action = action,
            .Postdata = "a=x&b=x",
            .Header = {},
            .Frame = {}};
}

void Visit(BenchPage& page)
{
    page.Load("/huge.html");
    page.Server().ForgetRequests();
    page.Script("document.querySelector('[type=submit]').click(), 1");
    RunUntil([&] { return !page.Server().Requests().empty(); });
}

void Huge(benchmark::State& state)
{
    const HugePage& huge = kPages[state.range(0)];
    state.SetLabel(huge.name);
    BenchPage& page = ThePage();
    page.Server().Answer("/to.cgi", {.Status = 204});
    page.Server().Page("/huge.html",
                       "<!DOCTYPE html><form action='to.cgi' method='post'><input name='a'><input type='submit'>"
                       "<input name='b'></form><script>{ const form = document.forms[0];" +
                           std::string(huge.script) + "; }</script>");
    frmBrowser& program = page.Form();
    frmBrowser::AddRecordItem(program.lvwPermanent,
                              RecordFor(page.Server().Url("/huge.html"), page.Server().Url("/to.cgi")));
    program.mnuManualClick_Click();
    program.mnuAutoRecord_Click();
    const test::Heartbeat heart;
    Visit(page);
    const double before = ResidentMegabytes();
    for (auto _ : state) Visit(page);
    state.counters["held_ms"] = heart.Longest() * 1000;
    state.counters["grown_mb"] = ResidentMegabytes() - before;
    program.mnuAutoRecord_Click();
    program.mnuNoFill_Click();
    for (ListView* list : {&program.lvwPermanent, &program.ListView1}) {
        while (list->Count() > 0) list->Remove(list->Item(1));
    }
}

BENCHMARK(Huge)->DenseRange(0, std::size(kPages) - 1)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
}  // namespace velmora::bench
