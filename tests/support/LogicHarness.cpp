#include "tests/support/LogicHarness.h"

#include <utility>

namespace velmora::test {

LogicHarness::LogicHarness()
{
    Start();
    dialogs.Shown.clear();
}

LogicHarness::~LogicHarness()
{
    EXPECT_EQ(dialogs.Unanswered, 0) << "a question came that the test did not expect";
    EXPECT_TRUE(dialogs.Answers.empty()) << "a question that the test expected did not come";
    EXPECT_TRUE(dialogs.Visits.empty()) << "a dialog that the test expected did not come";
}

void LogicHarness::Start()
{
    turns_ = std::make_unique<Turns>();
    program_ = std::make_unique<frmBrowser>(Platform{*turns_, dialogs, *disk, proxy, proxyTable});
    engine_ = std::make_unique<CannedBrowser>(program_->wbMyBrowser, site);
    dialogs.PendingEvents = [this] { engine_->Deliver(); };
    program_->Form_Load();
    statusAtStart = Status();
    program_->Visible = true;
    program_->Form_Resize();
    engine_->Deliver();
}

void LogicHarness::Restart()
{
    dialogs.PendingEvents = nullptr;
    engine_.reset();
    program_.reset();
    Start();
}

void LogicHarness::Press(CommandButton& button)
{
    ASSERT_TRUE(button.Enabled() && button.Visible()) << button.Name << " cannot be pressed";
    button.Click.Raise();
}

void LogicHarness::Switch(MenuItem& item, bool on)
{
    if (item.Checked() != on) Pick(item);
    ASSERT_EQ(item.Checked(), on) << item.Name;
}

void LogicHarness::Go(const std::string& url)
{
    Program().txtUrl.Text = url;
    Press(Program().cmdPlayback);
    Engine().Deliver();
}

void LogicHarness::Follow(const std::string& url)
{
    Engine().Navigate(url);
    Engine().Deliver();
}

void LogicHarness::Send(const std::string& url, const std::string& body, const std::string& headers,
                        const std::string& target, BrowserObject* frame)
{
    WebBrowser& browser = Program().wbMyBrowser;
    BeforeNavigate2Event event{frame ? *frame : browser, url, 0, target, body, headers};
    browser.BeforeNavigate2.Raise(event);
    EXPECT_FALSE(event.Cancel);
}

void LogicHarness::OpenRecords(int tab, int row)
{
    Switch(Program().mnuHideRecord, false);
    Program().SSTab1.Tab = tab;
    if (row > 0) Program().CurrentRecordList().Select(&Program().CurrentRecordList().Item(row));
}

void LogicHarness::AddTemporary(const RecordItem& record)
{
    frmBrowser::AddRecordItem(Program().ListView1, record);
    OpenRecords(1, Program().ListView1.Count());
}

Lines LogicHarness::Rows(ListView& list)
{
    Lines rows;
    for (int i = 1; i <= list.Count(); ++i) {
        std::string row = list.Item(i).Text();
        for (int column = 1; column < 7; ++column) (row += " | ") += list.Item(i).Cell(column);
        while (row.ends_with(" | ")) row.resize(row.size() - 3);
        rows.push_back(row);
    }
    return rows;
}

Lines LogicHarness::Journal() { return std::exchange(*Engine().Log, {}); }
Lines LogicHarness::Shown() { return std::exchange(dialogs.Shown, {}); }

std::string LogicHarness::SessionFile(const std::string& name) const
{
    const auto found = files.Texts.find("/app/session/" + name);
    return found == files.Texts.end() ? "none" : found->second;
}

Lines LogicHarness::SessionFiles() const
{
    Lines names;
    for (const auto& [path, text] : files.Texts) names.push_back(path.substr(std::string("/app/session/").size()));
    return names;
}

void LogicHarness::Keep(const RecordItem& record)
{
    files.Folders.insert("/app/session");
    files.Texts["/app/session/" + frmBrowser::MakeSessionFileName(record.Url) + ".xml"] = FileOf(record);
}

}  // namespace velmora::test
