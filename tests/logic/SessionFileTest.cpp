#include "tests/support/Faults.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

const RecordItem kRecord{"Form", "My <b>", "http://h/p", "http://h/a.cgi", "a=1&b=%3C&c=", "A: 1\r\nB: 2\r\n", ""};

TEST(SessionFile, BytesOfARecord)
{
    EXPECT_EQ(frmBrowser::BuildSessionXml(kRecord),
              "<?xml version=\"1.0\"?>\r\n"
              "<Velmora>\r\n"
              "    <Type>Form</Type>\r\n"
              "    <Session>My <b></Session>\r\n"
              "    <Url>http://h/p</Url>\r\n"
              "    <Action>http://h/a.cgi</Action>\r\n"
              "    <Postdata>a=1&b=%3C&c=</Postdata>\r\n"
              "    <Header>A: 1\r\nB: 2\r\n</Header>\r\n"
              "    <Frame></Frame>\r\n"
              "</Velmora>");
    EXPECT_EQ(frmBrowser::BuildHomeXml("http://h/?a&b"),
              "<?xml version=\"1.0\"?>\r\n"
              "<Velmora>\r\n"
              "    <Type>Home</Type>\r\n"
              "    <Home>http://h/?a&b</Home>\r\n"
              "</Velmora>");
    RecordItem back;
    frmBrowser::ParseSessionXml(frmBrowser::BuildSessionXml(kRecord) + "\r\n", back);
    EXPECT_EQ(back, kRecord);
}

TEST(SessionFile, NoFileIsRefused)
{
    const std::pair<std::string, RecordItem> table[] = {
        {"no tags at all", {"Form", "", "", "", "", "", ""}},
        {std::string("\0\xFF\x01<Url>u\0v</Url>", 17), {"Form", "", std::string("u\0v", 3), "", "", "", ""}},
        {"<Type>Form<Session>s</Session>", {"Form", "s", "", "", "", "", ""}},
        {"<type>home</TYPE><URL> u\r\n</uRl>", {"home", "", " u\r\n", "", "", "", ""}},
        {"<Frame>f</Frame><Url>1</Url><Url>2</Url>", {"Form", "", "1", "", "", "", "f"}},
        {"<Session>x<Url>y</Session><Url>z</Url></Session>", {"Form", "x<Url>y", "y</Session><Url>z", "", "", "", ""}},
        {"</Url><Url>late</Url>", {"Form", "", "late", "", "", "", ""}}};
    for (const auto& [text, record] : table) {
        RecordItem read;
        frmBrowser::ParseSessionXml(text, read);
        EXPECT_EQ(read, record) << text;
    }
    RecordItem kept = kRecord;
    frmBrowser::ParseSessionXml("<Type>Home</Type><Session>other</Session>", kept);
    EXPECT_EQ(kept.Type, "Home");
    EXPECT_EQ(kept.Session, kRecord.Session) << "a settings file leaves the other fields alone";
}

TEST(SessionFile, NameOfAFile)
{
    EXPECT_EQ(frmBrowser::MakeSessionFileName("abcdefg.h-i"), "_h_i");
    EXPECT_EQ(frmBrowser::MakeSessionFileName("http://Host/A.cgi?x=1"), "Host_A_cgi_x_1");
    EXPECT_EQ(frmBrowser::MakeSessionFileName("http://é日😀://../"), "_________") << "one for each character";
    EXPECT_EQ(frmBrowser::MakeSessionFileName("http:/"), "");
}

class PermanentStore : public LogicHarness {
protected:
    ListView& List() { return Program().lvwPermanent; }
};

TEST_F(PermanentStore, StartReadsWhatItCan)
{
    files.Texts = {{"/app/session/a.xml", frmBrowser::BuildSessionXml({"Form", "a", "http://h/a", "", "", "", ""})},
                   {"/app/session/B.XML", "<Type>Odd</Type><Session>b</Session><Url>http://h/b</Url>"},
                   {"/app/session/c.xml", ""},
                   {"/app/session/d.xml.bak", "<Session>d</Session>"},
                   {"/app/session/e.xml", "<Session>locked</Session>"},
                   {"/app/session/f.xml", "no tags"},
                   {"/app/session/g.xml", "<Session>g</Session><Url>http://h/A?1</Url>"},
                   {"/app/session/other.xml", "<Type>Home</Type><Home>http://home/</Home>"}};
    files.Locked = {"/app/session/e.xml"};
    dialogs.EventRounds = 0;
    Restart();
    EXPECT_EQ(statusAtStart, "4 Permanent Record");
    EXPECT_EQ(Program().glngNoOfPermanentSession, 4);
    EXPECT_EQ(Rows(List()),
              (Lines{"g | Form | http://h/A?1", "b | Odd | http://h/b", "a | Form | http://h/a", " | Form"}));
    EXPECT_EQ(List().Item(1).Key(), "http://h/A?1");
    ASSERT_NE(List().SelectedItem(), nullptr);
    EXPECT_EQ(Program().txtUrl.Text(), "http://home/");
    EXPECT_EQ(dialogs.EventRounds, 8) << "pending events run once for every file, skipped ones too";
}

TEST_F(PermanentStore, MovingARecordWritesItsFileAndTakesItFromTheTemporaryOnes)
{
    AddTemporary({"Form", "one", "http://h/P?q=1", "a", "x=\xE2\x82\xAC", "", ""});
    Press(Program().cmdSave);
    EXPECT_EQ(Program().ListView1.Count(), 0);
    EXPECT_EQ(Rows(List()), Lines{"one | Form | http://h/P?q=1 | a | x=€"});
    EXPECT_NE(SessionFile("h_P_q_1.xml").find("<Postdata>x=\x80</Postdata>"), std::string::npos);
    EXPECT_TRUE(SessionFile("h_P_q_1.xml").ends_with("</Velmora>\r\n"));
    EXPECT_TRUE(Program().mnuHideRecord.Checked()) << "Auto Hide follows a move";

    // The same key with another address: one row, two files, and two rows after a restart.
    AddTemporary({"Form", "two", "http://h/p?q=2", "b", "y=2", "", ""});
    Press(Program().cmdSave);
    EXPECT_EQ(Rows(List()), Lines{"two | Form | http://h/p?q=2 | b | y=2"});
    EXPECT_EQ(Program().glngNoOfPermanentSession, 1);
    EXPECT_EQ(SessionFiles(), (Lines{"h_P_q_1.xml", "h_p_q_2.xml"}));
    Restart();
    EXPECT_EQ(statusAtStart, "2 Permanent Record");
    EXPECT_TRUE(List().Find("http://h/p") && List().Find("http://h/p?q=2"));
}

TEST_F(PermanentStore, DeletingAsksForPermanentRecordsOnly)
{
    const auto remove = [this](int tab) {
        OpenRecords(tab, 1);
        Press(Program().cmdDelete);
        return Status();
    };
    AddTemporary({"Form", "kept", "http://h/p", "a", "x=1", "", ""});
    Press(Program().cmdSave);
    AddTemporary({"Form", "gone", "http://h/q", "a", "x=1", "", ""});
    EXPECT_EQ(remove(1), "Record session is deleted!");
    EXPECT_EQ(Program().ListView1.Count(), 0);
    dialogs.Answers = {Answer::No, Answer::Yes, Answer::Yes};
    EXPECT_EQ(remove(0), "Delete action is aborted!");
    faults = {.failing = 2, .where = {}};  // behind the question
    EXPECT_EQ(remove(0), "Delete action is aborted!") << "what stays on disk stays in the list";
    EXPECT_EQ(remove(0), "Record session is deleted!");
    EXPECT_EQ(SessionFiles(), Lines{});
    EXPECT_EQ(Program().glngNoOfPermanentSession, 0);
    EXPECT_EQ(Shown(), Lines(3, "[kept] Are you sure to delete this permanent record session? (YesNo)"));
}

TEST_F(PermanentStore, ButtonsNeedASelection)
{
    OpenRecords(0);
    for (auto* button : {&Program().cmdFill, &Program().cmdDelete, &Program().cmdEdit}) Press(*button);
    OpenRecords(1);
    EXPECT_FALSE(Program().cmdFill.Enabled());
    Press(Program().cmdSave);
    EXPECT_EQ(Shown(), Lines(4, "Please select a record session from the list first!"));
    EXPECT_FALSE(Program().mnuHideRecord.Checked());
}

}  // namespace velmora::test
