// What every document model keeps, the one in memory and the engine's. A test program includes this
// file once and instantiates the suite with a way to get its documents.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Browser.h"
#include "tests/support/PageSketch.h"

namespace velmora::test {

/// Shows pages, one after the other.
class DocumentSource {
public:
    virtual ~DocumentSource() = default;
    /// The document of the page, finished, in place of the one before.
    virtual std::shared_ptr<Document> Show(const PageSketch& page) = 0;
};

using MakeDocumentSource = std::unique_ptr<DocumentSource> (*)();

class DocumentContract : public testing::TestWithParam<MakeDocumentSource> {
protected:
    std::shared_ptr<Document> Show(const PageSketch& page) { return source_->Show(page); }

    /// "type name" of every element of a form.
    static std::vector<std::string> ElementsOf(Form& form)
    {
        std::vector<std::string> lines;
        for (int j = 0; j < form.Length(); ++j) {
            lines.push_back(form.Elements(j)->Type() + " " + form.Elements(j)->Name());
        }
        return lines;
    }

    /// The texts of the options that are selected.
    static std::vector<std::string> Selection(Element& list)
    {
        std::vector<std::string> texts;
        for (int k = 0; k < list.OptionsLength(); ++k) {
            if (list.Options(k)->Selected()) texts.push_back(list.Options(k)->Text());
        }
        return texts;
    }

private:
    std::unique_ptr<DocumentSource> source_ = GetParam()();
};

using Lines = std::vector<std::string>;

TEST_P(DocumentContract, ElementsAreTheControlsOfAFormInDocumentOrder)
{
    auto disabled = Text("off");
    disabled.disabled = true;
    auto early = Text("early");
    early.form = "f";
    auto late = Submit("late");
    late.form = "f";
    const auto document = Show({.forms = {{.action = "a.cgi",
                                           .controls = {{.tag = "fieldset", .name = "set"},
                                                        Text("user"),
                                                        {.tag = "input", .name = "plain"},
                                                        {.tag = "input", .type = "no-such-type", .name = "odd"},
                                                        Password("pass"),
                                                        Hidden("id", "1"),
                                                        Box("box", "1"),
                                                        Radio("pick", "1"),
                                                        Image("img", "x.png"),
                                                        One("one", {{"a"}}),
                                                        Many("many", {{"a"}}),
                                                        Area("area"),
                                                        disabled,
                                                        {.tag = "output", .name = "out"},
                                                        {.tag = "object", .name = "obj"},
                                                        {.tag = "button", .name = "go"},
                                                        {.tag = "button", .type = "button", .name = "noop"},
                                                        Submit("send")},
                                           .id = "f"}},
                                .before = {early},
                                .after = {late, Text("loose")}});
    const auto form = document->Forms(0);
    EXPECT_EQ(ElementsOf(*form),
              (Lines{"text early", "text user", "text plain", "text odd", "password pass", "hidden id", "checkbox box",
                     "radio pick", "select-one one", "select-multiple many", "textarea area", "text off", "submit go",
                     "button noop", "submit send", "submit late"}));
    EXPECT_EQ(form->Id(), "f");
    EXPECT_EQ(form->Document()->FormsLength(), 1);
}

TEST_P(DocumentContract, ActionIsTheTextOfThePage)
{
    const auto document = Show({.forms = {{.action = "/bin/Login.asp?a=1&b=2"},
                                          {},
                                          {.action = "two words.cgi"},
                                          {.action = "x.cgi", .controls = {Text("action")}, .id = "shadowed"},
                                          {.action = "y.cgi", .controls = {Image("action", "x.png")}}}});
    ASSERT_EQ(document->FormsLength(), 5);
    EXPECT_EQ(document->Forms(0)->Action(), "/bin/Login.asp?a=1&b=2");
    EXPECT_EQ(document->Forms(1)->Action(), "");
    EXPECT_EQ(document->Forms(2)->Action(), "two words.cgi");
    EXPECT_EQ(document->Forms(3)->Action(), "[object]");
    EXPECT_EQ(document->Forms(3)->Id(), "shadowed");
    EXPECT_EQ(document->Forms(4)->Action(), "y.cgi");
}

TEST_P(DocumentContract, FieldsDoNotHideTheFormsOwnMembers)
{
    const auto document = Show({.forms = {{.action = "a.cgi",
                                           .controls = {Text("elements"), Text("length"), Text("id"), Text("document"),
                                                        Text("querySelectorAll"), Text("name")},
                                           .id = "f"}}});
    const auto form = document->Forms(0);
    EXPECT_EQ(form->Length(), 6);
    EXPECT_EQ(form->Id(), "f");
    EXPECT_EQ(form->Elements(1)->Name(), "length");
    EXPECT_EQ(form->Document()->FormsLength(), 1);
}

TEST_P(DocumentContract, MarkupHasNoNeedlessQuotes)
{
    const auto document = Show({.forms = {{.action = "/bin/login.asp", .id = "login", .method = "post"},
                                          {.action = "go.cgi?a=1&b=2", .method = "get"},
                                          {.action = "two words.cgi", .method = "get"}}});
    const std::string html = document->InnerHtml();
    for (const char* tag : {"<form action=/bin/login.asp id=login method=post>",
                            "<form action=go.cgi?a=1&b=2 method=get>", "<form action=\"two words.cgi\" method=get>"}) {
        EXPECT_NE(html.find(tag), std::string::npos) << tag << " in\n" << html;
    }
}

TEST_P(DocumentContract, ValuesComeAsTheyAre)
{
    const std::string difficult = "Zoë & \"Co\" <b> %41 \\ \xE2\x82\xAC \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80";
    const auto document = Show({.forms = {{.controls = {Text("text", difficult),
                                                        Area("area", "one\ntwo " + difficult),
                                                        {.type = "checkbox", .name = "bare"},
                                                        One("list", {{"first", "1"}, {difficult}}),
                                                        Text("empty")}}}});
    const auto form = document->Forms(0);
    EXPECT_EQ(form->Elements(0)->Value(), difficult);
    EXPECT_EQ(form->Elements(1)->Value(), "one\ntwo " + difficult);
    EXPECT_EQ(form->Elements(2)->Value(), "on");
    EXPECT_EQ(form->Elements(3)->Value(), "1");
    EXPECT_EQ(form->Elements(3)->Options(1)->Value(), difficult);
    EXPECT_EQ(form->Elements(4)->Value(), "");

    form->Elements(4)->SetValue(difficult);
    form->Elements(1)->SetValue("three\n\nfour\\n");
    EXPECT_EQ(form->Elements(4)->Value(), difficult);
    EXPECT_EQ(form->Elements(1)->Value(), "three\n\nfour\\n");
    form->Elements(0)->SetValue("");
    EXPECT_EQ(document->Forms(0)->Elements(0)->Value(), "") << "a second way to the same element";
}

TEST_P(DocumentContract, OptionTextIsTrimmedAndItsBlanksCollapsed)
{
    const auto document = Show({.forms = {{.controls = {One("color", {{" \n Dark \t  red ", "1"}, {"", "2"}})}}}});
    const auto list = document->Forms(0)->Elements(0);
    ASSERT_EQ(list->OptionsLength(), 2);
    EXPECT_EQ(list->Options(0)->Text(), "Dark red");
    EXPECT_EQ(list->Options(0)->Value(), "1");
    EXPECT_EQ(list->Options(1)->Text(), "");
}

TEST_P(DocumentContract, AListOfOneHasOneSelectionAndAListOfManyKeepsTheOthers)
{
    const auto document = Show(
        {.forms = {{.controls = {One("one", {{"a"}, {"b"}, {"c"}}), Many("many", {{"a", {}, true}, {"b"}, {"c"}})}}}});
    const auto one = document->Forms(0)->Elements(0);
    EXPECT_EQ(Selection(*one), Lines{"a"}) << "the first is selected where none is marked";
    one->Options(2)->Select();
    EXPECT_EQ(Selection(*one), Lines{"c"});
    EXPECT_EQ(one->Value(), "c");

    const auto many = document->Forms(0)->Elements(1);
    many->Options(2)->Select();
    many->Options(2)->Select();
    EXPECT_EQ(Selection(*many), (Lines{"a", "c"}));
}

TEST_P(DocumentContract, BoxesStayTickedAndRadioButtonsGiveWay)
{
    const auto document =
        Show({.forms = {{.controls = {Box("box", "1", true), Box("box", "2"), Radio("pick", "x", true),
                                      Radio("pick", "y"), Radio("other", "z", true)}}}});
    const auto form = document->Forms(0);
    for (const int j : {0, 1, 3}) form->Elements(j)->Check();
    std::string ticked;
    for (int j = 0; j < form->Length(); ++j) ticked += form->Elements(j)->Checked() ? '1' : '0';
    EXPECT_EQ(ticked, "11011");
}

TEST_P(DocumentContract, TagsAreCollectedFromTheWholeDocument)
{
    const auto document = Show({.forms = {{.controls = {Text("user"), Area("not"), Image("go", "go.png")}},
                                          {.controls = {Password("pass"), One("nor", {{"a"}})}}},
                                .before = {Text("first")},
                                .after = {Image("last", "")}});
    for (const char* tag : {"INPUT", "input"}) {
        const auto inputs = document->GetElementsByTagName(tag);
        Lines lines;
        for (int i = 0; i < inputs->Length(); ++i) {
            lines.push_back(inputs->Item(i)->Type() + " " + inputs->Item(i)->Name() + " " + inputs->Item(i)->Src());
        }
        EXPECT_EQ(lines, (Lines{"text first ", "text user ", "image go go.png", "password pass ", "image last "}));
    }
    document->GetElementsByTagName("INPUT")->Item(1)->SetValue("anna");
    EXPECT_EQ(document->Forms(0)->Elements(0)->Value(), "anna");
}

TEST_P(DocumentContract, FramesHaveDocumentsUnlessTheyRefuse)
{
    const PageSketch left{.forms = {{.action = "left.cgi", .controls = {Text("a")}}}};
    const PageSketch other{.forms = {{.action = "other.cgi"}}, .refuses = true};
    const PageSketch right{.forms = {{.action = "right.cgi"}, {.action = "more.cgi"}}};
    const auto document = Show({.forms = {{.action = "top.cgi"}}, .frames = {left, other, right}});
    ASSERT_EQ(document->FramesLength(), 3);
    EXPECT_EQ(document->FormsLength(), 1);
    const auto inner = document->Frames(0)->Document();
    EXPECT_EQ(inner->Forms(0)->Action(), "left.cgi");
    EXPECT_EQ(inner->FramesLength(), 0);
    inner->Forms(0)->Elements(0)->SetValue("filled");
    EXPECT_EQ(document->Frames(0)->Document()->Forms(0)->Elements(0)->Value(), "filled");
    EXPECT_THROW(document->Frames(1)->Document(), DocumentError);
    EXPECT_EQ(document->Frames(2)->Document()->FormsLength(), 2);
}

TEST_P(DocumentContract, WhatIsNotThereThrows)
{
    const auto document = Show({.forms = {{.controls = {One("list", {{"a"}})}}}});
    const auto form = document->Forms(0);
    const auto inputs = document->GetElementsByTagName("INPUT");
    for (const int i : {-1, 1, 1000000}) {
        EXPECT_THROW(document->Forms(i)->Length(), DocumentError) << i;
        EXPECT_THROW(form->Elements(i)->Name(), DocumentError) << i;
        EXPECT_THROW(form->Elements(0)->Options(i)->Text(), DocumentError) << i;
        EXPECT_THROW(inputs->Item(i)->Name(), DocumentError) << i;
        EXPECT_THROW(document->Frames(i)->Document(), DocumentError) << i;
    }
}

TEST_P(DocumentContract, AnEmptyPageCanBeRead)
{
    const auto document = Show({});
    EXPECT_EQ(document->FormsLength(), 0);
    EXPECT_EQ(document->FramesLength(), 0);
    EXPECT_EQ(document->GetElementsByTagName("INPUT")->Length(), 0);
    EXPECT_EQ(document->InnerHtml().find("<form"), std::string::npos);
}

TEST_P(DocumentContract, APageThatIsGoneThrows)
{
    const PageSketch page{.forms = {{.action = "a.cgi", .controls = {Text("user")}}}};
    const auto old = Show(page);
    const auto form = old->Forms(0);
    const auto element = form->Elements(0);
    const auto present = Show(page);
    EXPECT_THROW(old->FormsLength(), DocumentError);
    EXPECT_THROW(form->Length(), DocumentError);
    EXPECT_THROW(element->SetValue("into the void"), DocumentError);
    EXPECT_EQ(present->Forms(0)->Elements(0)->Value(), "");
}

}  // namespace velmora::test
