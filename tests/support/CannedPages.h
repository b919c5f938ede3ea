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

namespace velmora::test {

struct CannedOption {
    std::string text;
    std::string value;
    bool selected = false;
};

struct CannedElement {
    std::string type;
    std::string name;
    std::string value = {};
    bool checked = false;
    std::vector<CannedOption> options = {};
    std::string src = {};
    bool unreadable = false;  ///< Every read and write of it fails.
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
inline CannedElement Image(std::string name, std::string src) { return {.type = "image", .name = name, .src = src}; }
inline CannedElement One(std::string name, std::vector<CannedOption> options)
{
    return {.type = "select-one", .name = name, .options = std::move(options)};
}
inline CannedElement Many(std::string name, std::vector<CannedOption> options)
{
    return {.type = "select-multiple", .name = name, .options = std::move(options)};
}

/// What the program did to pages, a line for each call: "user := anna", "check news=yes",
/// "choose color: Red", "click go".
using Journal = std::vector<std::string>;

/// A page or a frame of one; a BrowserObject whose document is the page.
class CannedFrame : public BrowserObject {
public:
    CannedFrame(CannedPage page, std::shared_ptr<Journal> journal);
    std::shared_ptr<velmora::Document> Document() override;

    const CannedPage page;
    const std::shared_ptr<Journal> journal;
    std::vector<std::shared_ptr<CannedFrame>> frames;
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
