// The road of one form: recorded, kept, and played back by a later run of the program.
#include <gmock/gmock.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr char kRecordQuestion[] = "A temporary record is created, do you want to view/edit it now?";
constexpr char kFillQuestion[] = "Do you want to auto fill-in this form";
constexpr char kGoQuestion[] = "Do you want to go to this form?";

constexpr char kLogin[] =
    "<form action='login.cgi' method='post'>"
    "<input name='user'><input name='pass' type='password'>"
    "<select name='colour'><option value='1'>Red<option value='2'>Green</select>"
    "<input type='checkbox' name='keep' value='yes'><input type='submit' value='Send'></form>";

class Road : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/login.html", kLogin);
        server_.Page("/login.cgi", "<p id='done'>Welcome</p>");
        StartProgram();
    }

    /// Records the form of a page: visits it with Auto Record on, fills it in, submits it, says No.
    void Record(const std::string& page, const std::function<void()>& fillAndSubmit, const std::string& answer)
    {
        if (!Form().mnuAutoRecord.Checked()) Press("cmdRecord");
        Go(page);
        Expect({.text = kRecordQuestion, .button = "No"});
        fillAndSubmit();
        WaitForDocument(answer);
        EXPECT_TRUE(AllAnswered());
    }

    void FillLogin()
    {
        Type("[name=user]", "anna");
        Type("[name=pass]", "s&cret=1");
        Script("document.querySelector('[name=colour]').selectedIndex = 1; 1");
        Click("[name=keep]");
        RunUntil([&] { return Script("document.querySelector('[name=keep]').checked") == "true"; }, "the tick");
        Click("[type=submit]");
    }

    void RecordLogin()
    {
        Record(
            server_.Url("/login.html"), [this] { FillLogin(); }, server_.Url("/login.cgi"));
    }

    void MoveToPermanent()
    {
        Press("cmdHideRecord");
        Form().SSTab1.Tab = 1;
        SelectRow("ListView1", 1);
        Press("cmdSave");
    }

    void GoToFirstRecord()
    {
        Press("cmdHideRecord");
        Form().SSTab1.Tab = 0;
        SelectRow("lvwPermanent", 1);
        Expect({.text = kGoQuestion, .button = "Yes"});
        Press("cmdFill");
    }

    std::string BodySent(const std::string& path, std::size_t nth)
    {
        const auto requests = server_.RequestsTo(path);
        return nth < requests.size() ? requests[nth].Body : "no such request";
    }
};

TEST_F(Road, ARecordedFormIsSentAgainByTheNextRun)
{
    RecordLogin();
    const std::string sent = "user=anna&pass=s%26cret%3D1&colour=2&keep=yes";
    EXPECT_EQ(BodySent("/login.cgi", 0), sent);
    ASSERT_EQ(Form().ListView1.Count(), 1);
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "user=anna&pass=s%26cret%3D1&colour=Green&keep=yes");
    MoveToPermanent();
    EXPECT_EQ(Form().ListView1.Count(), 0);

    Restart();
    Press("cmdRecord");
    GoToFirstRecord();
    Expect({.text = kFillQuestion, .button = "Ok"});
    WaitForDocument(server_.Url("/login.cgi"));

    EXPECT_EQ(BodySent("/login.cgi", 1), sent);
    EXPECT_EQ(Form().ListView1.Count(), 0) << "a form that was played back is not recorded again";
    EXPECT_THAT(Asked(),
                ElementsAre(HasSubstr(kRecordQuestion), "Address: " + server_.Url("/login.html") + ": " + kGoQuestion,
                            std::string("Session=Session1: ") + kFillQuestion));
}

TEST_F(Road, TheNextPageOfAChainIsFilledInItsTurn)
{
    server_.Page("/login.cgi",
                 "<form action='order.cgi' method='post'><input name='item'><input type='submit'></form>");
    server_.Page("/order.cgi", "ordered");
    RecordLogin();
    MoveToPermanent();
    // The record of the second page: its index is that of a fresh Go.
    Record(
        server_.Url("/login.cgi"),
        [this] {
            Type("[name=item]", "tea");
            Click("[type=submit]");
        },
        server_.Url("/order.cgi"));
    MoveToPermanent();

    Restart();
    Press("cmdPrompt");
    Expect({.text = kGoQuestion, .button = "Yes"});
    Press("cmdHideRecord");
    SelectRow("lvwPermanent", Form().lvwPermanent.Item(1).SubItem("Url") == server_.Url("/login.html") ? 1 : 2);
    Press("cmdFill");
    WaitForDocument(server_.Url("/order.cgi"));
    EXPECT_EQ(BodySent("/order.cgi", 1), "item=tea");
}

TEST_F(Road, AGetFormIsRecordedFromItsAddressAndSentAgain)
{
    server_.Page("/search.html", "<form action='find'><input name='q'><input type='submit'></form>");
    server_.Page("/find", "found");
    Record(
        server_.Url("/search.html"),
        [this] {
            Type("[name=q]", "tea cups");
            Click("[type=submit]");
        },
        server_.Url("/find?q=tea+cups"));
    const ListItem& row = Form().ListView1.Item(1);
    EXPECT_EQ(row.SubItem("Action"), server_.Url("/find"));
    EXPECT_EQ(row.SubItem("Postdata"), "q=tea+cups");
    MoveToPermanent();
    Restart();
    GoToFirstRecord();
    Expect({.text = kFillQuestion, .button = "Ok"});
    WaitForDocument(server_.Url("/find?q=tea+cups"));
    EXPECT_EQ(server_.RequestsTo("/find").size(), 2U);
}

TEST_F(Road, AFormInAFrameOfAFramesetIsRecordedAndFilled)
{
    server_.Page("/set.html", "<frameset cols='50%,50%'><frame src='menu.html'><frame src='login.html'></frameset>");
    server_.Page("/menu.html", "menu");
    const std::string frame = "frames[1].document";
    Record(
        server_.Url("/set.html"),
        [&] {
            Type("[name=user]", "anna", frame);
            Script(frame + ".querySelector('[type=submit]').click(); 1");
        },
        server_.Url("/login.cgi"));
    const ListItem& row = Form().ListView1.Item(1);
    EXPECT_EQ(row.SubItem("Url"), server_.Url("/set.html"));
    EXPECT_EQ(row.SubItem("Postdata"), "user=anna&pass=&colour=Red");
    MoveToPermanent();

    Restart();
    GoToFirstRecord();
    Expect({.text = kFillQuestion, .button = "Ok"});
    WaitForDocument(server_.Url("/login.cgi"));
    EXPECT_EQ(BodySent("/login.cgi", 1), "user=anna&pass=&colour=1");
}

TEST_F(Road, WithManualClickTheFilledFormWaitsForTheUser)
{
    RecordLogin();
    MoveToPermanent();
    Press("cmdAutoClick");
    GoToFirstRecord();
    Expect({.text = kFillQuestion, .button = "Ok"});
    RunUntil([&] { return AllAnswered() && Script("document.querySelector('[name=pass]')?.value") == "s&cret=1"; },
             "the filled form");
    EXPECT_EQ(Script("document.querySelector('[name=colour]').value"), "2");
    EXPECT_EQ(Script("document.querySelector('[name=keep]').checked"), "true");
    EXPECT_THAT(server_.RequestsTo("/login.cgi"), SizeIs(1));
    Click("[type=submit]");
    RunUntil([&] { return server_.RequestsTo("/login.cgi").size() == 2; }, "the user's own submission");
    EXPECT_EQ(BodySent("/login.cgi", 1), BodySent("/login.cgi", 0));
    EXPECT_EQ(Form().ListView1.Count(), 0);
}

TEST_F(Road, APromptThatIsCancelledAndAFillThatIsOffLeaveThePageAlone)
{
    RecordLogin();
    MoveToPermanent();
    Expect({.text = kFillQuestion, .button = "Cancel"});
    Go(server_.Url("/login.html"));
    EXPECT_EQ(Script("document.querySelector('[name=user]').value"), "");

    Form().mnuNoFill.Click.Raise();
    Go(server_.Url("/login.html"));
    EXPECT_EQ(Script("document.querySelector('[name=user]').value"), "");
    EXPECT_THAT(server_.RequestsTo("/login.cgi"), SizeIs(1));
}

}  // namespace
}  // namespace velmora::test
