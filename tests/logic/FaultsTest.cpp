// Every call of document, files, dialogs and proxies fails once, at each place of the road of a record in turn.
#include <algorithm>

#include "editor/frmEdit.h"
#include "platform/text/CodePage.h"
#include "records/frmBookmark.h"
#include "services/frmProxy.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

class FaultsOnTheRoad : public LogicHarness {
protected:
    static constexpr char kPage[] = "http://shop/login.html";

    FaultsOnTheRoad() { Keep(kept_); }
    ~FaultsOnTheRoad() override
    {
        faults = {};
        dialogs.Unanswered = 0;
    }

    /// One step: what the user does, and the answers and the hands in dialogs that go with it. Nothing gets out of the
    /// program, every file is whole, and the rows say what the files say.
    void Step(const char* what, std::deque<Answer> answers, const std::function<void()>& act)
    {
        SCOPED_TRACE(what);
        dialogs.Answers = std::move(answers);
        dialogs.Visits = {[](Window& dialog) {
            if (auto* const editor = dynamic_cast<frmEdit*>(&dialog)) {
                editor->txtSession.Text = "Shop";
                editor->txtValue[0].Text = "berta";
                Press(editor->cmdOK);
            } else if (auto* const bookmark = dynamic_cast<frmBookmark*>(&dialog)) {
                bookmark->txtSession.Text = "Shop too";
                Press(bookmark->cmdOK);
            } else if (auto* const proxyDialog = dynamic_cast<frmProxy*>(&dialog)) {
                EXPECT_NO_THROW(proxyDialog->cmdProxy.Click.Raise());
                Press(proxyDialog->cmdOK);
            }
        }};
        EXPECT_NO_THROW(act());
        dialogs.Answers.clear();
        dialogs.Visits.clear();
        for (const auto& [path, text] : files.Texts) {
            RecordItem record;
            frmBrowser::ParseSessionXml(TextOfBytes(text), record);
            EXPECT_EQ(text, FileOf(record)) << path;
            const auto fields = std::count(record.Postdata.begin(), record.Postdata.end(), '=');
            EXPECT_EQ(fields, record == kept_ ? 1 : record.Type == kTypeForm ? 5 : 0) << record.Postdata;
        }
        // What could not be listed or read is left alone. What could not be written is told by whoever writes, and
        // stands in the list until the program ends.
        if (faults.where != "List" && faults.where != "Read" && faults.where != "Write") ExpectFilesOfRows();
    }

    /// Deletes all records of a tab but the one that was there from the start.
    void DeleteAll(int tab)
    {
        OpenRecords(tab);
        for (int i = Program().CurrentRecordList().Count(); i > 0; --i) {
            OpenRecords(tab, i);
            if (Program().CurrentRecordList().Item(i).Text() != kept_.Session) Press(Program().cmdDelete);
        }
    }

    /// The road of a record. What the user has in the end, and what was done to the pages.
    Lines Walk()
    {
        proxyTable.Servers = {{"one", "80"}};
        Journal();
        frmBrowser& program = Program();
        Step("delete", {4, Answer::Yes}, [&] { DeleteAll(0); });
        Step("delete temporary ones", {}, [&] { DeleteAll(1); });
        Step("capture and edit", {Answer::Yes}, [&] {
            Switch(program.mnuAutoRecord, true);
            Go(kPage);
            Send("http://shop/login.asp", "user=a&news=2&color=Red&size=s&size=s");
        });
        Step("keep", {}, [&] {
            OpenRecords(1, program.ListView1.Count());
            if (program.ListView1.Count() > 0) Press(program.cmdSave);
        });
        const auto press = [&](CommandButton& button) {
            OpenRecords(0);
            program.lvwPermanent.Select(program.lvwPermanent.Find(kPage));
            Press(button);
            Engine().Deliver();
        };
        Step("edit", {}, [&] { press(program.cmdEdit); });
        Step("play back", {Answer::Yes, Answer::Ok}, [&] { press(program.cmdFill); });
        Step("bookmark", {}, [&] {
            Follow("http://shop/");
            if (program.cmdBookmark.Enabled()) Press(program.cmdBookmark);
        });
        Step("proxy", {}, [&] { Pick(program.mnuProxy); });
        Lines outcome = Rows(Program().lvwPermanent);
        for (const auto& [path, text] : files.Texts) outcome.push_back(path + ": " + text);
        for (const std::string& line : Journal()) outcome.push_back(line);
        outcome.push_back(Program().ProxyDialog().txtIP.Text() + " " + std::to_string(Program().ListView1.Count()));
        return outcome;
    }

    /// Each row has its file, and says what the file says.
    void ExpectFilesOfRows()
    {
        EXPECT_EQ(Program().lvwPermanent.Count(), static_cast<int>(files.Texts.size()));
        for (int i = 1; i <= Program().lvwPermanent.Count(); ++i) {
            RecordItem record;
            frmBrowser::ReadRecordItem(Program().lvwPermanent.Item(i), record);
            EXPECT_EQ(files.Texts[Program().SessionFilePath(record.Url)], FileOf(record)) << record.Url;
        }
    }

    void Exit()
    {
        // The program stays where the exit fails: the user tries once more.
        while (!dialogs.Ended) Step("exit", {Answer::Yes}, [&] { Pick(Program().mnuExit); });
        dialogs.Ended = false;
    }

    const RecordItem kept_{"Form", "Kept", "http://kept/", "http://kept/a", "a=1", "", ""};
};

TEST_F(FaultsOnTheRoad, EndWhereTheyAreAndTheNextWalkIsAsAnyOther)
{
    CannedForm byImage{"login.asp",
                       {Text("user", "anna"), Box("news", "1", true),
                        Select("select-one", "color", {{"Red", "r"}, {"Blue", "b", true}}),
                        Select("select-multiple", "size", {{"S", "s", true}, {"L", "l", true}})}};
    CannedForm byButton = byImage;
    byButton.elements.push_back(Submit("go"));
    byImage.elements.push_back(Image("ok", "ok.png"));
    const CannedForm hidden{"[object]", {Text("other")}};
    const CannedPage pages[] = {
        {.forms = {hidden, byImage}, .html = "<form action=x.asp><form action=login.asp>"},
        {.forms = {byImage}, .frames = {{.forms = {hidden}}, {.forms = {byButton}}}},
    };
    for (const CannedPage& page : pages) {
        site[kPage] = page;
        faults = {};
        Restart();
        const Lines expected = Walk();
        bool hasFailed = true;
        for (int failing = 1; hasFailed && !HasFailure(); ++failing) {
            faults = {.failing = failing, .where = {}};
            Restart();
            const bool isOfTheStart = !faults.where.empty();
            Walk();
            const bool endsHere = isOfTheStart || faults.where.empty();
            if (endsHere) Exit();
            hasFailed = !faults.where.empty();
            SCOPED_TRACE("call " + std::to_string(failing) + ", " + std::exchange(faults, {}).where);
            if (endsHere) Restart();
            EXPECT_EQ(Walk(), expected);
        }
    }
}

}  // namespace velmora::test
