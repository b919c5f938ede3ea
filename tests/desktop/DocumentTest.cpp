// The document model on the real engine.
#include <gmock/gmock.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using Lines = std::vector<std::string>;

class DocumentModel : public DesktopTest {
protected:
    std::shared_ptr<Document> Show(const std::string& html)
    {
        const std::string path = "/" + std::to_string(++pages_);
        server_.Page(path, "<!DOCTYPE html><body>" + html);
        Go(server_.Url(path));
        return Form().wbMyBrowser.Document();
    }

    /// "type name=value" of every element, ": text/value" for each option, "*" at what is ticked or selected.
    static Lines Elements(velmora::Form& form)
    {
        Lines lines;
        for (int j = 0; j < form.Length(); ++j) {
            const auto element = form.Elements(j);
            std::string line = element->Type() + " " + element->Name() + "=" + element->Value();
            if (element->Checked()) line += "*";
            for (int k = 0; k < element->OptionsLength(); ++k) {
                const auto option = element->Options(k);
                line += ": " + option->Text() + "/" + option->Value() + (option->Selected() ? "*" : "");
            }
            lines.push_back(line);
        }
        return lines;
    }

private:
    int pages_ = 0;
};

TEST_F(DocumentModel, TheElementsOfAFormAreReadAndWrittenAsThePageHoldsThem)
{
    const std::string difficult = "Zoë & <b> %41 \\ \xE2\x82\xAC \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80";
    const auto form =
        Show("<input name=early form=f><form id=f><fieldset name=set></fieldset><input name=plain value='" + difficult +
             "'><input type=no-such-type name=odd><input type=password name=pass value=p>"
             "<input type=hidden name=id value=1><input type=checkbox name=box checked>"
             "<input type=checkbox name=box value=2><input type=radio name=pick value=x checked>"
             "<input type=radio name=pick value=y><input type=image name=img src=x.png>"
             "<select name=one><option value=1> \n Dark \t  red <option></select>"
             "<select multiple name=many><option selected>a<option>b<option>c</select>"
             "<textarea name=area>\none\ntwo</textarea><input name=off disabled><output name=out></output>"
             "<object name=obj></object><button name=go></button><button type=button name=noop></button>"
             "<input type=submit name=send></form><input name=late form=f><input name=loose>")
            ->Forms(0);
    EXPECT_EQ(form->Id(), "f");
    Lines lines{"text early=",
                "text plain=" + difficult,
                "text odd=",
                "password pass=p",
                "hidden id=1",
                "checkbox box=on*",
                "checkbox box=2",
                "radio pick=x*",
                "radio pick=y",
                "select-one one=1: Dark red/1*: /",
                "select-multiple many=a: a/a*: b/b: c/c",
                "textarea area=one\ntwo",
                "submit go=",
                "button noop=",
                "submit send=",
                "text late=",
                "text off="};
    EXPECT_EQ(Elements(*form), lines);

    form->Elements(0)->SetValue(difficult);
    form->Elements(1)->SetValue("");
    form->Elements(11)->SetValue("three\n\nfour\\n");
    for (const int j : {5, 6, 8}) form->Elements(j)->Check();
    form->Elements(9)->Options(1)->Select();
    for (const int k : {0, 2, 2}) form->Elements(10)->Options(k)->Select();
    lines[0] += difficult;
    lines[1] = "text plain=";
    lines[6] += "*";
    lines[7] = "radio pick=x";
    lines[8] += "*";
    lines[9] = "select-one one=: Dark red/1: /*";
    lines[10] = "select-multiple many=a: a/a*: b/b: c/c*";
    lines[11] = "textarea area=three\n\nfour\\n";
    EXPECT_EQ(Elements(*form->Document()->Forms(0)), lines) << "a second way to the same form";
}

TEST_F(DocumentModel, ActionsAndMarkupAreSpelledAsTheyAreAnnounced)
{
    const auto document = Show(
        "<form action='/bin/login.asp?a=1&amp;b=2' id=login method=post></form><form></form>"
        "<form action='two words.cgi#a'></form><form action=x.cgi id=shadowed><input name=action></form>"
        "<form action=y.cgi><input type=image name=action></form>"
        "<form action='/shop/?page=2'></form><form action='/shop/?page=2' method=post></form>"
        "<form action=a.cgi id=f><input name=elements><input name=length><input name=id><input name=document>"
        "<input name=querySelectorAll></form>");
    Lines forms;
    for (int i = 0; i < document->FormsLength(); ++i) {
        const auto form = document->Forms(i);
        forms.push_back(form->Action() + " " + form->Id() + " " + std::to_string(form->Length()));
    }
    EXPECT_EQ(forms, (Lines{"/bin/login.asp?a=1&b=2 login 0", server_.Url("/1") + "  0",
                            server_.Url("/two%20words.cgi") + "  0", "[object] shadowed 1", "y.cgi  0",
                            server_.Url("/shop/") + "  0", server_.Url("/shop/?page=2") + "  0", "a.cgi f 5"}));
    EXPECT_EQ(document->Forms(7)->Elements(1)->Name(), "length");
    EXPECT_EQ(document->Forms(7)->Document()->FormsLength(), 8);
    const std::string own = "<form action=" + server_.Url("");
    EXPECT_EQ(document->InnerHtml(),
              "<form action=/bin/login.asp?a=1&b=2 id=login >\n" + own + "/1 >\n" + own +
                  "/two%20words.cgi >\n<form action=x.cgi id=shadowed >\n<form action=y.cgi >\n" + own + "/shop/ >\n" +
                  own + "/shop/?page=2 >\n<form action=a.cgi id=f >");
}

TEST_F(DocumentModel, WhatIsNotThereRefusesOrIsGoneThrows)
{
    const auto document = Show(
        "<form action=top.cgi><select name=s><option>a</select></form>"
        "<iframe srcdoc='<form><input type=hidden></form>'></iframe><iframe sandbox srcdoc='<form><input>'></iframe>"
        "<iframe srcdoc='<form><input name=a></form>'></iframe>");
    const auto form = document->Forms(0);
    const auto inner = document->Frames(0)->Document();
    inner->Forms(0)->Elements(0)->SetValue("filled");
    EXPECT_EQ(document->Frames(0)->Document()->Forms(0)->Elements(0)->Value(), "filled");
    EXPECT_EQ(inner->FramesLength() + 10 * document->FramesLength() + 100 * document->FormsLength(), 110);
    for (const int i : {-1, 1, 1000000}) {
        EXPECT_THROW(document->Forms(i)->Length(), DocumentError) << i;
        EXPECT_THROW(form->Elements(i)->Name(), DocumentError) << i;
        EXPECT_THROW(form->Elements(0)->Options(i)->Text(), DocumentError) << i;
        EXPECT_THROW(document->GetElementsByTagName("INPUT")->Item(i)->Name(), DocumentError) << i;
        EXPECT_THROW(document->Frames(i)->Document(), DocumentError) << i;
    }

    const auto empty = Show("");
    EXPECT_EQ(empty->FormsLength() + empty->FramesLength() + empty->GetElementsByTagName("INPUT")->Length(), 0);
    EXPECT_THROW(document->FormsLength(), DocumentError) << "the page is gone";
    EXPECT_THROW(form->Length(), DocumentError);
    EXPECT_THROW(inner->Forms(0)->Elements(0)->SetValue("into the void"), DocumentError);
}

}  // namespace
}  // namespace velmora::test
