// What the program learns of a submission before it goes out.
#include <gmock/gmock.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

constexpr char kRecordQuestion[] = "A temporary record is created, do you want to view/edit it now?";

class Submission : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/to.cgi", "arrived");
        StartProgram();
        Form().wbMyBrowser.BeforeNavigate2.Add([this](BeforeNavigate2Event& event) {
            if (event.URL.find("/to.cgi") != std::string::npos) posted_ = event.PostData;
        });
    }

    /// Shows a page and lets `submit` send its form; the bytes announced must be those that arrived.
    void ExpectSameBytes(const std::string& how, const std::string& page, const std::string& type,
                         const std::function<void()>& submit, const std::string& expected)
    {
        SCOPED_TRACE(how + ", " + type);
        server_.Page("/form.html", page, type);
        server_.ForgetRequests();
        posted_.clear();
        Go(server_.Url("/form.html"));
        submit();
        if (!RunUntil([&] { return server_.RequestsTo("/to.cgi").size() == 1; }, "the submission")) return;
        RunUntil([&] { return Completed().back() == server_.Url("/to.cgi"); }, "the answer");
        EXPECT_EQ(server_.RequestsTo("/to.cgi")[0].Body, expected);
        EXPECT_EQ(posted_, expected);
    }

    std::string posted_;
};

TEST_F(Submission, PostDataIsWhatTheServerReceives)
{
    const std::string utf8 = "text/html; charset=utf-8";
    const std::string western = "text/html; charset=windows-1252";
    const std::string fields =
        "<form id='f' action='to.cgi' method='post'><input name='na me' value='a&b=c+d'>"
        "<textarea name='t'>one\ntwo</textarea><input name='price' value='&euro;5 &#8594; &#20013;'>"
        "<input type='checkbox' name='c' value='1' checked><input type='checkbox' name='d'>"
        "<select multiple name='m'><option selected>x<option>y<option selected>z</select>"
        "<input type='hidden' name='h' value='*-._~'><input type='submit' name='go' value='Send'></form>";
    const std::string start = "na+me=a%26b%3Dc%2Bd&t=one%0D%0Atwo&price=";
    const std::string end = "&c=1&m=x&m=z&h=*-._%7E";
    const std::string priceUtf8 = "%E2%82%AC5+%E2%86%92+%E4%B8%AD";
    const std::string priceWestern = "%805+%26%238594%3B+%26%2320013%3B";

    ExpectSameBytes(
        "a click", fields, utf8, [&] { Click("[name=go]"); }, start + priceUtf8 + end + "&go=Send");
    ExpectSameBytes(
        "a click", fields, western, [&] { Click("[name=go]"); }, start + priceWestern + end + "&go=Send");
    ExpectSameBytes(
        "form.submit()", fields, utf8, [&] { Script("document.forms[0].submit()"); }, start + priceUtf8 + end);
    ExpectSameBytes(
        "form.requestSubmit()", fields, utf8, [&] { Script("document.forms[0].requestSubmit()"); },
        start + priceUtf8 + end);
    ExpectSameBytes(
        "Enter", fields, western,
        [&] {
            const std::string focus = "document.querySelector('input').focus(); document.activeElement.name";
            RunUntil([&] { return Script(focus) == "na me"; }, "the focus in the field");
            Key("Return");
        },
        start + priceWestern + end + "&go=Send");
}

TEST_F(Submission, AQuestionHoldsTheNavigationAndThePageIsReadMeanwhile)
{
    server_.Page("/form.html",
                 "<form action='to.cgi' method='post'><input name='a' value='typed'>"
                 "<select name='s'><option value='7'>Seven</select><input type='submit'></form>");
    Press("cmdRecord");
    Go(server_.Url("/form.html"));
    bool looked = false;
    Expect({.text = kRecordQuestion, .button = "No", .before = [&] {
                looked = true;
                EXPECT_TRUE(server_.RequestsTo("/to.cgi").empty());
                EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=typed&s=Seven");
                EXPECT_EQ(Form().wbMyBrowser.Document()->Forms(0)->Elements(0)->Value(), "typed");
                // The page stands still for the user, not for itself.
                EXPECT_EQ(Script("document.forms.length"), "1");
                EXPECT_TRUE(server_.RequestsTo("/to.cgi").empty());
            }});
    Click("[type=submit]");
    RunUntil([&] { return server_.RequestsTo("/to.cgi").size() == 1; }, "the submission");
    EXPECT_TRUE(looked);
}

TEST_F(Submission, AFormOnASecurePageIsRecorded)
{
    WebServer secure(WebServer::Scheme::Https);
    secure.Page("/form.html",
                "<form action='to.cgi' method='post'><input name='a' value='1'><input type='submit'></form>");
    secure.Page("/to.cgi", "arrived");
    webkit_network_session_set_tls_errors_policy(Engine().Session(), WEBKIT_TLS_ERRORS_POLICY_IGNORE);
    Press("cmdRecord");
    Go(secure.Url("/form.html"));
    Expect({.text = kRecordQuestion, .button = "No"});
    Click("[type=submit]");
    WaitForDocument(secure.Url("/to.cgi"));
    EXPECT_EQ(secure.RequestsTo("/to.cgi").at(0).Body, "a=1");
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=1");
}

TEST_F(Submission, TheFrameThatATargetNamesIsToldAndNavigates)
{
    server_.Page(
        "/set.html",
        "<frameset cols='50%,50%'><frame name='left' src='left.html'><frame name='right' src='right.html'></frameset>");
    server_.Page("/left.html", "<form action='to.cgi' method='post' target='right'><input name='a' value='1'></form>");
    server_.Page("/right.html", "<p>the right one</p>");
    Press("cmdRecord");
    std::string target;
    std::string navigating;
    Form().wbMyBrowser.BeforeNavigate2.Add([&](BeforeNavigate2Event& event) {
        if (event.PostData.empty()) return;
        target = event.TargetFrameName;
        navigating = event.pDisp.Document()->InnerHtml();
    });
    Go(server_.Url("/set.html"));
    Expect({.text = kRecordQuestion, .button = "No"});
    Script("frames[0].document.forms[0].submit(); 1");
    WaitForDocument(server_.Url("/to.cgi"));
    EXPECT_EQ(target, "right");
    EXPECT_THAT(navigating, testing::HasSubstr("the right one"));
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Frame"), "right");
}

}  // namespace
}  // namespace velmora::test
