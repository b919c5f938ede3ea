// What many records cost: each figure beside its yardstick in the same run, or as time and bytes of its own.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "bench/BenchPage.h"
#include "platform/Turns.h"
#include "tests/support/MemoryFiles.h"

namespace velmora::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kMany = 100'000;

/// A log-in, a search or an order, as they come; no two of one address.
RecordItem RecordOf(int i)
{
    const std::string number = std::to_string(i);
    // Spread over the alphabet, so that the order of the names is not that of their making.
    const std::string name = std::to_string(i * 7919L % 1'000'003);
    return {.Type = i % 10 == 9 ? kTypeBookmark : kTypeForm,
            .Session = "Record " + name,
            .Url = "https://www.shop-" + std::to_string(i % 977) + ".example/account/login-" + number + ".html",
            .Action = "https://www.shop-" + std::to_string(i % 977) + ".example/cgi-bin/session.cgi",
            .Postdata = "user=anna" + number + "&password=Se7cret%26more%25&remember=yes&city=Berlin&note=" +
                        std::string(static_cast<std::size_t>(i % 200), 'n') + "&go=Log%20in",
            .Header = "Content-Type: application/x-www-form-urlencoded\r\nReferer: https://www.shop.example/\r\n",
            .Frame = {}};
}

std::size_t TextBytes(const RecordItem& record)
{
    std::size_t bytes = 0;
    for (const RecordField& field : kRecordFields) bytes += (record.*field.text).size();
    return bytes;
}

/// The logic on files of its own, without a window.
class Logic {
public:
    explicit Logic(Files& files)
        : form({.turns = turns_,
                .dialogs = ThePage().Questions(),
                .files = files,
                .proxy = proxy_,
                .proxyTable = proxyTable_})
    {
    }

    /// Fills the permanent list, which is sorted by name.
    void AddRecords(int count)
    {
        for (int i = 0; i < count; ++i) frmBrowser::AddRecordItem(form.lvwPermanent, RecordOf(i));
        form.SortPermanentList(0);
    }

private:
    Turns turns_{[](const Turns::Action&) {}};
    test::MemoryProxy proxy_;
    test::MemoryProxyTable proxyTable_;

public:
    frmBrowser form;
};

using Seconds = std::chrono::duration<double>;

template <class Action>
double TimeOf(const Action& action)
{
    const auto start = Clock::now();
    action();
    return Seconds(Clock::now() - start).count();
}

// --- Start ----------------------------------------------------------------------------------------

/// A program folder with as many session files.
const std::string& FolderOfRecords(int count)
{
    static std::map<int, std::string> folders;
    std::string& folder = folders[count];
    if (!folder.empty()) return folder;
    folder = NewFolder();
    fs::create_directory(folder + "/session");
    for (int i = 0; i < count; ++i) {
        const std::string text = frmBrowser::BuildSessionXml(RecordOf(i)) + "\r\n";
        const std::string path = folder + "/session/" + frmBrowser::MakeSessionFileName(RecordOf(i).Url) + ".xml";
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (write(file, text.data(), text.size()) < 0 || close(file) != 0) throw std::runtime_error("no records");
    }
    return folder;
}

/// The least that a start can do: each file of the folder is opened and read.
std::size_t ReadBarely(const std::string& folder)
{
    std::size_t bytes = 0;
    char buffer[std::size_t{64} << 10];
    DIR* const listing = opendir(folder.c_str());
    while (const dirent* entry = readdir(listing)) {
        if (entry->d_type != DT_REG) continue;
        const int file = openat(dirfd(listing), entry->d_name, O_RDONLY | O_CLOEXEC);
        bytes += static_cast<std::size_t>(std::max<ssize_t>(0, read(file, buffer, sizeof buffer)));
        close(file);
    }
    closedir(listing);
    return bytes;
}

void LoadRecords(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const std::string& folder = FolderOfRecords(count);
    // What the window does at its own start is none of it; the scroll bars of its first page fade for seconds.
    ThePage().Server().Page("/short.html", "<!DOCTYPE html>A page without scroll bars.");
    ThePage().Load("/short.html");
    ThePage().AwaitPicture();
    double barely = 0;
    double whole = 0;
    for (auto _ : state) {
        barely += TimeOf([&] { benchmark::DoNotOptimize(ReadBarely(folder + "/session")); });
        PosixFiles files(folder);
        Logic logic(files);
        logic.form.gstrSessionPath = folder + "/session";
        const double took = TimeOf([&] { logic.form.LoadPermanentSession(); });
        if (logic.form.lvwPermanent.Count() != count) state.SkipWithError("records are missing");
        whole += took;
        state.SetIterationTime(took);
    }
    state.counters["bare_ms"] = barely * 1000 / static_cast<double>(state.iterations());
    state.counters["ratio"] = whole / barely;
}

/// Bytes of memory for each byte of the records' texts.
void MemoryOfRecords(benchmark::State& state)
{
    const auto used = [] {
        const struct mallinfo2 info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    std::size_t texts = 0;
    for (int i = 0; i < kMany; ++i) texts += TextBytes(RecordOf(i));
    test::MemoryFiles files;
    for (auto _ : state) {
        Logic logic(files);
        const double before = used();
        logic.AddRecords(kMany);
        state.counters["row_bytes"] = (used() - before - static_cast<double>(texts)) / kMany;
        state.counters["ratio"] = (used() - before) / static_cast<double>(texts);
    }
    state.counters["text_bytes"] = static_cast<double>(texts) / kMany;
}

/// Records of one address, beside as many of an address each.
void AddOfOneAddress(benchmark::State& state)
{
    double eachItsOwn = 0;
    double one = 0;
    for (auto _ : state) {
        test::MemoryFiles files;
        const auto add = [&](const auto& addressOf) {
            Logic logic(files);
            return TimeOf([&] {
                for (int i = 0; i < kMany; ++i) {
                    RecordItem record = RecordOf(i);
                    record.Url = addressOf(record);
                    frmBrowser::AddRecordItem(logic.form.lvwPermanent, record);
                }
            });
        };
        eachItsOwn += add([](const RecordItem& record) { return record.Url; });
        const double took = add([](const RecordItem&) { return RecordOf(0).Url; });
        one += took;
        state.SetIterationTime(took);
    }
    state.counters["own_ms"] = eachItsOwn * 1000 / static_cast<double>(state.iterations());
    state.counters["ratio"] = one / eachItsOwn;
}

// --- Use ------------------------------------------------------------------------------------------

/// A program with many records, and one that waits to be moved there.
class ManyRecords {
public:
    ManyRecords() : logic(files_)
    {
        logic.AddRecords(kMany);
        Form().gstrSessionPath = "/app/session";
    }

    frmBrowser& Form() { return logic.form; }

    void AddTemporary(const RecordItem& record)
    {
        frmBrowser::AddRecordItem(Form().ListView1, record);
        Form().ListView1.Select(&Form().ListView1.Item(Form().ListView1.Count()));
        Form().glngCurTab = 1;
    }

private:
    test::MemoryFiles files_;

public:
    Logic logic;
};

ManyRecords& TheMany()
{
    static ManyRecords many;
    return many;
}

/// Runs an action on many records, each time with another number.
template <class Prepare, class Act>
void Run(benchmark::State& state, const Prepare& prepare, const Act& act)
{
    static int number = kMany;
    frmBrowser& form = TheMany().Form();
    for (auto _ : state) {
        prepare(form, ++number);
        state.SetIterationTime(TimeOf([&] { act(form, number); }));
    }
}

void MoveRecord(benchmark::State& state)
{
    Run(
        state, [](frmBrowser&, int i) { TheMany().AddTemporary(RecordOf(i)); },
        [](frmBrowser& form, int) { form.cmdSave_Click(); });
}

void TakeBookmark(benchmark::State& state)
{
    Run(
        state, [](frmBrowser& form, int i) { form.strLastUrl = RecordOf(i).Url; },
        [](frmBrowser& form, int) { form.cmdBookmark_Click(); });
}

void ChangeRecord(benchmark::State& state)
{
    const auto select = [](frmBrowser& form, int i) {
        form.glngCurTab = 0;
        form.lvwPermanent.Select(&form.lvwPermanent.Item(1 + i * 31 % kMany));
    };
    Run(state, select, [](frmBrowser& form, int i) {
        RecordItem record;
        frmBrowser::ReadSelectedRecord(form.lvwPermanent, record);
        record.Session = RecordOf(i).Session;
        frmBrowser::UpdateSelectedRecord(form.lvwPermanent, record);
    });
}

void DeleteRecord(benchmark::State& state)
{
    const auto select = [](frmBrowser& form, int i) {
        form.lvwPermanent.Select(&form.lvwPermanent.Item(1 + i * 31 % kMany));
    };
    Run(state, select, [](frmBrowser& form, int) { form.lvwPermanent.Remove(*form.lvwPermanent.SelectedItem()); });
}

/// A finished document of which there is no record, or whose record is the last one.
void ScanRecords(benchmark::State& state)
{
    frmBrowser& form = TheMany().Form();
    form.gstrCurMode = "Playback";
    if (form.mnuPromptFill.Checked()) form.mnuPromptFill_Click();
    ListItem& last = form.lvwPermanent.Item(form.lvwPermanent.Count());
    last.SetSubItem("Type", kTypeForm);
    last.SetSubItem("Postdata", "");
    const std::string url = state.range(0) == 0 ? "https://nowhere.example/" : last.SubItem("Url");
    for (auto _ : state) form.PlayDocument(form.wbMyBrowser, url);
}

/// A click on the header of another column, until the window shows it.
void ClickHeader(benchmark::State& state)
{
    BenchPage& page = ThePage();
    frmBrowser& form = page.Form();
    while (form.lvwPermanent.Count() > 0) form.lvwPermanent.Remove(form.lvwPermanent.Item(form.lvwPermanent.Count()));
    form.lvwPermanent.Sorted = false;
    for (int i = 0; i < kMany; ++i) frmBrowser::AddRecordItem(form.lvwPermanent, RecordOf(i));
    form.lvwPermanent.Sorted = true;
    page.AwaitPicture();
    form.mnuHideRecord_Click();
    int column = 0;
    for (auto _ : state) {
        const ColumnHeader header = form.lvwPermanent.ColumnHeaders()[static_cast<std::size_t>(column = 2 - column)];
        page.AwaitPicture();
        state.SetIterationTime(TimeOf([&] {
            form.lvwPermanent_ColumnClick(header);
            page.AwaitPicture();
        }));
    }
    form.mnuHideRecord_Click();
}

/// The same click without a window.
void SortRecords(benchmark::State& state)
{
    int column = 0;
    Run(
        state, [&](frmBrowser&, int) { column = 2 - column; },
        [&](frmBrowser& form, int) { form.SortPermanentList(column); });
}

BENCHMARK(LoadRecords)->Arg(1'000)->Arg(10'000)->Arg(kMany)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryOfRecords)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(AddOfOneAddress)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(MoveRecord)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(TakeBookmark)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(ChangeRecord)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(DeleteRecord)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);
BENCHMARK(ScanRecords)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(SortRecords)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(ClickHeader)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
}  // namespace velmora::bench
