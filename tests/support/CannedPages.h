// Pages that answer what a test tells them, and a browser that shows them. Nothing here behaves as an
// engine does: what a test expects of one, it says itself.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls/WebBrowser.h"
#include "tests/support/Faults.h"

namespace velmora::test {

struct CannedOption {
    std::string text;
    std::string value;
    bool selected = false;
};

/// What the program did to pages, a line for each call: "user := anna", "check news=yes",
/// "choose color: Red", "click go".
using Journal = std::vector<std::string>;

/// What a page tells, unless it is to fail just now.
template <class Value>
const Value& Told(const Value& value)
{
    MayFail<DocumentError>();
    return value;
}

class CannedElement : public Element {
public:
    CannedElement(std::string type, std::string name, std::string value = {}, bool checked = false)
        : type_(std::move(type)), name_(std::move(name)), value_(std::move(value)), checked_(checked)
    {
    }

    std::string Name() override { return Readable(name_); }
    std::string Type() override { return Readable(type_); }
    std::string Value() override { return Readable(value_); }
    bool Checked() override { return Readable(checked_); }
    std::string Src() override { return Readable(src); }
    int OptionsLength() override { return static_cast<int>(Readable(options).size()); }
    std::shared_ptr<Option> Options(int k) override;
    void SetValue(const std::string& value) override { journal->push_back(Readable(name_) + " := " + value); }
    void Check() override { journal->push_back("check " + Readable(name_) + "=" + value_); }
    bool IsImage() const { return type_ == "image"; }
    bool Click() override
    {
        journal->push_back("click " + Readable(name_) + (isDisabled ? "!" : ""));
        return !isDisabled;
    }

    std::vector<CannedOption> options;
    std::string src;
    bool isDisabled = false;     ///< And stays so.
    bool unreadable = false;     ///< Every read and write of it fails.
    Journal* journal = nullptr;  ///< Of the frame that shows it.

private:
    template <class Member>
    const Member& Readable(const Member& member) const
    {
        if (unreadable) throw DocumentError("the element cannot be read");
        return Told(member);
    }

    std::string type_;
    std::string name_;
    std::string value_;
    bool checked_;
};

struct CannedForm {
    std::string action;
    std::vector<CannedElement> elements = {};  ///< Image buttons among them are no elements of the form.
    std::string id = {};
};

struct CannedPage {
    std::vector<CannedForm> forms = {};
    std::vector<CannedPage> frames = {};
    std::string address = "about:srcdoc";  ///< What a frame completes with.
    bool refuses = false;                  ///< Cannot be read, as a frame of another origin.
    std::string html = {};                 ///< Empty: a tag for each form, "<form action=a.cgi id=f>".
};

// The elements that pages are made of.
inline CannedElement Text(std::string name, std::string value = {}) { return {"text", name, value}; }
inline CannedElement Submit(std::string name = {}) { return {"submit", name, "Send"}; }
inline CannedElement Box(std::string name, std::string value, bool checked = false)
{
    return {"checkbox", name, value, checked};
}
inline CannedElement Radio(std::string name, std::string value, bool checked = false)
{
    return {"radio", name, value, checked};
}
inline CannedElement Image(std::string name, std::string src)
{
    CannedElement image("image", std::move(name));
    image.src = std::move(src);
    return image;
}
inline CannedElement Select(std::string type, std::string name, std::vector<CannedOption> options)
{
    CannedElement list(std::move(type), std::move(name));
    list.options = std::move(options);
    return list;
}

/// A page or a frame of one, and its document.
class CannedFrame : public BrowserObject, public velmora::Document {
public:
    CannedFrame(CannedPage page, std::shared_ptr<Journal> journal);

    std::shared_ptr<velmora::Document> Document() override;
    int FramesLength() override { return static_cast<int>(Told(frames).size()); }
    std::shared_ptr<BrowserObject> Frames(int i) override;
    int FormsLength() override { return static_cast<int>(Told(page_.forms).size()); }
    std::shared_ptr<Form> Forms(int i) override;
    std::string InnerHtml() override;
    std::shared_ptr<ElementCollection> GetElementsByTagName(const std::string&) override;

    const std::string& Address() const { return page_.address; }

    std::vector<std::shared_ptr<CannedFrame>> frames;

private:
    CannedPage page_;
    const std::shared_ptr<Journal> journal_;
};

/// A browser that goes where it is told when the test says so.
class CannedBrowser : public BrowserEngine {
public:
    CannedBrowser(WebBrowser& control, const std::map<std::string, CannedPage>& site);
    ~CannedBrowser() override { control_.Attach(nullptr); }

    void Navigate(const std::string& url) override;
    void GoBack() override { Visited.push_back("back"); }
    std::shared_ptr<Document> CurrentDocument() override { return Page->Document(); }

    /// Carries out what waits: each navigation is announced, its page, an empty one if the site has
    /// none of that address, is put in place and completes, frames first.
    void Deliver();
    /// Announces that the present document of the address completed (again).
    void Complete(const std::string& url);

    const std::shared_ptr<Journal> Log = std::make_shared<Journal>();
    std::shared_ptr<CannedFrame> Page = std::make_shared<CannedFrame>(CannedPage{}, Log);
    std::vector<std::string> Visited;  ///< What was asked for, in its order: addresses and "back".

private:
    WebBrowser& control_;
    const std::map<std::string, CannedPage>& site_;
    std::deque<std::string> pending_;
};

}  // namespace velmora::test
