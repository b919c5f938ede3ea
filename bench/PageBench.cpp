// How long the program holds a page, beside what a script inside the page needs for the same.
//
// Each round loads the page anew, once for the program and once for the script, since both are
// called once for a page in real life: what counts is the first call. The columns: "Time" is the
// program's, script_ms the script's, ratio the one by the other.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/BenchPage.h"

namespace velmora::bench {
namespace {

using Seconds = std::chrono::duration<double>;

/// A form with as many fields, one of each kind in turn.
std::string FormPage(int fields)
{
    std::string html = "<!DOCTYPE html><form action='to.cgi' method='post'>";
    for (int i = 0; i < fields; ++i) {
        const std::string name = "name='field" + std::to_string(i) + "'";
        switch (i % 6) {
        case 0: html += "<input " + name + ">"; break;
        case 1: html += "<input type='password' " + name + ">"; break;
        case 2: html += "<textarea " + name + "></textarea>"; break;
        case 3: html += "<select " + name + "><option>one<option>two<option>three</select>"; break;
        case 4: html += "<input type='radio' value='a' " + name + "><input type='radio' value='b' " + name + ">"; break;
        default: html += "<input type='checkbox' value='yes' " + name + ">"; break;
        }
    }
    return html + "<input type='submit'></form>";
}

// As many fields as a record holds; the text fields after them are emptied.
constexpr int kMostRecorded = 60;

/// The post data of the form.
std::string RecordedFields(int fields)
{
    static constexpr const char* kValues[] = {"some%20text", "secret", "two%0D%0Alines", "two", "b", "yes"};
    std::string postdata;
    for (int i = 0; i < fields; ++i) {
        postdata += (i > 0 ? "&" : "") + std::string("field") + std::to_string(i) + "=" + kValues[i % 6];
    }
    return postdata;
}

/// Sets the same fields as the record does and fires the same events; gives the milliseconds.
std::string FillScript(int recorded)
{
    return R"((() => {
        const start = performance.now();
        const press = (e, type) => e.dispatchEvent(
            new KeyboardEvent(type, { bubbles: true, cancelable: true, composed: true, key: "Unidentified" }));
        const fire = (e) => {
            e.dispatchEvent(new InputEvent("input", { bubbles: true, composed: true, inputType: "insertText" }));
            if (e.select) press(e, "keyup");
            e.dispatchEvent(new Event("change", { bubbles: true }));
        };
        const values = ["some text", "secret", "two\nlines", "two", "b", "yes"];
        for (const e of document.forms[0].elements) {
            const i = Number(e.name.slice(5));
            const known = e.name !== "" && i < )" +
           std::to_string(recorded) + R"(;
            if (["text", "password", "textarea"].includes(e.type)) {
                const text = known ? values[i % 6] : "";
                if (e.value !== text) { press(e, "keydown"); e.value = text; fire(e); }
            } else if (e.type === "select-one" && known) {
                const option = [...e.options].find((o) => o.text === values[3]);
                if (!option.selected) { option.selected = true; fire(e); }
            } else if ((e.type === "radio" || e.type === "checkbox") && known && e.value === values[i % 6]) {
                if (!e.checked) e.click();
            }
        }
        return performance.now() - start;
    })())";
}

void Report(benchmark::State& state, double scriptMs, double programMs)
{
    const auto rounds = static_cast<double>(state.iterations());
    state.counters["script_ms"] = scriptMs / rounds;
    state.counters["ratio"] = programMs / scriptMs;
}

void ForgetRecords(ListView& list)
{
    while (list.Count() > 0) list.Remove(list.Item(1));
}

void Fill(benchmark::State& state)
{
    const int fields = static_cast<int>(state.range(0));
    BenchPage& page = ThePage();
    page.Server().Page("/form.html", FormPage(fields));
    ForgetRecords(page.Form().lvwPermanent);
    frmBrowser::AddRecordItem(page.Form().lvwPermanent, {.Type = kTypeForm,
                                                         .Session = "bench",
                                                         .Url = page.Server().Url("/form.html"),
                                                         .Action = page.Server().Url("/to.cgi"),
                                                         .Postdata = RecordedFields(fields),
                                                         .Header = {},
                                                         .Frame = {}});
    double scriptMs = 0;
    double programMs = 0;
    for (auto _ : state) {
        page.Form().mnuManualClick_Click();
        const Seconds took = page.Load("/form.html");
        page.Form().mnuNoFill_Click();
        const double filled = page.Script("document.querySelectorAll('input:checked').length");
        if (filled < 2) state.SkipWithError("the form was not filled");
        page.Load("/form.html");
        scriptMs += page.Script(FillScript(std::min(fields, kMostRecorded)));
        programMs += took.count() * 1000;
        state.SetIterationTime(took.count());
    }
    Report(state, scriptMs, programMs);
}

void Capture(benchmark::State& state)
{
    const int fields = static_cast<int>(state.range(0));
    BenchPage& page = ThePage();
    page.Server().Page("/form.html", FormPage(fields));
    ForgetRecords(page.Form().lvwPermanent);
    if (!page.Form().mnuAutoRecord.Checked()) page.Form().mnuAutoRecord_Click();
    double scriptMs = 0;
    double programMs = 0;
    for (auto _ : state) {
        page.Load("/form.html");
        scriptMs += page.Script(FillScript(std::min(fields, kMostRecorded)));
        BeforeNavigate2Event event{.pDisp = page.Form().wbMyBrowser,
                                   .URL = page.Server().Url("/to.cgi"),
                                   .TargetFrameName = {},
                                   .PostData = RecordedFields(fields),
                                   .Headers = {}};
        const int before = page.Form().ListView1.Count();
        const auto start = Clock::now();
        page.Form().wbMyBrowser_BeforeNavigate2(event);
        const Seconds took = page.Questions().asked - start;
        if (page.Form().ListView1.Count() != before + 1) state.SkipWithError("no record was made");
        programMs += took.count() * 1000;
        state.SetIterationTime(took.count());
    }
    page.Form().mnuAutoRecord_Click();
    Report(state, scriptMs, programMs);
}

void CompleteLongPage(benchmark::State& state)
{
    BenchPage& page = ThePage();
    std::string html = "<!DOCTYPE html>";
    for (int i = 0; i < 5; ++i) html += "<form id='f" + std::to_string(i) + "' action='to.cgi'><input name='a'></form>";
    while (html.size() < (std::size_t{2} << 20)) {
        html +=
            "<p class='plain' title='a &amp; b'>Some words of text with <a href='/there?x=1&amp;y=2'>a link</a> in "
            "it.</p>\n";
    }
    page.Server().Page("/long.html", html);
    double scriptMs = 0;
    double programMs = 0;
    for (auto _ : state) {
        const Seconds took = page.Load("/long.html");
        if (page.Form().glngNoOfFormAction != 5) state.SkipWithError("the forms were not found");
        scriptMs += page.Script(
            "(() => { const start = performance.now(); const size = document.documentElement.innerHTML.length;"
            "return size > 0 ? performance.now() - start : 0; })()");
        programMs += took.count() * 1000;
        state.SetIterationTime(took.count());
    }
    Report(state, scriptMs, programMs);
}

BENCHMARK(Fill)->Arg(60)->Arg(300)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(Capture)->Arg(60)->Arg(300)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(CompleteLongPage)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

}  // namespace
}  // namespace velmora::bench
