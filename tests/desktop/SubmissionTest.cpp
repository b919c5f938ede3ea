// What the program learns of a submission before it goes out.
#include <gmock/gmock.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

class Submission : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/to.cgi", "arrived");
        Press("cmdRecord");
    }
};

TEST_F(Submission, AQuestionHoldsTheNavigationAndThePageIsReadMeanwhile)
{
    Show("/form.html",
         "<form action='to.cgi' method='post'><input name='a' value='typed'>"
         "<select name='s'><option value='7'>Seven</select><input type='submit'></form>");
    bool looked = false;
    Expect({.text = kRecordQuestion, .button = "No", .before = [&] {
                looked = true;
                EXPECT_TRUE(server_.Bodies("/to.cgi").empty());
                EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=typed&s=Seven");
                EXPECT_EQ(Form().wbMyBrowser.Document()->Forms(0)->Elements(0)->Value(), "typed");
                // The page stands still for the user, not for itself.
                EXPECT_EQ(Script("document.forms.length"), "1");
                EXPECT_TRUE(server_.Bodies("/to.cgi").empty());
            }});
    Click("[type=submit]");
    RunUntil([&] { return server_.Bodies("/to.cgi").size() == 1; }, "the submission");
    EXPECT_TRUE(looked);
}

TEST_F(Submission, AFormOnASecurePageIsRecorded)
{
    WebServer secure(WebServer::Scheme::Https);
    secure.Page("/form.html",
                "<form action='to.cgi' method='post'><input name='a' value='1'><input type='submit'></form>");
    secure.Page("/to.cgi", "arrived");
    webkit_network_session_set_tls_errors_policy(Engine().Session(), WEBKIT_TLS_ERRORS_POLICY_IGNORE);
    Go(secure.Url("/form.html"));
    Expect({.text = kRecordQuestion, .button = "No"});
    Click("[type=submit]");
    WaitForDocument(secure.Url("/to.cgi"));
    EXPECT_EQ(secure.Bodies("/to.cgi").at(0), "a=1");
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=1");
}

TEST_F(Submission, AFormForAnotherFrameIsReadWhereItStands)
{
    server_.Page(
        "/set.html",
        "<frameset cols='50%,50%'><frame name='left' src='left.html'><frame name='right' src='right.html'></frameset>");
    server_.Page("/left.html",
                 "<form action='to.cgi' method='post' target='right'><input name='a' value='1'>"
                 "<select name='s'><option value='7'>Seven</select></form>");
    server_.Page("/right.html", "<p>the right one</p>");
    Go(server_.Url("/set.html"));
    Expect({.text = kRecordQuestion, .button = "No"});
    Script("frames[0].document.forms[0].submit(); 1");
    WaitForDocument(server_.Url("/to.cgi"));
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=1&s=Seven");
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Frame"), "right");
}

}  // namespace
}  // namespace velmora::test
