// A browser engine over pages held in memory. Navigations wait until the test delivers them, as
// they wait for the message loop in the program.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Browser.h"
#include "tests/support/MemoryDocument.h"

namespace velmora::test {

/// The bytes that a form sends in the default encoding.
std::string FormUrlencoded(const MemoryDocument::EntryList& entries);
/// An address in a page, made whole; knows what tests need: whole addresses, "/path" and "file".
std::string Resolved(const std::string& page, const std::string& address);

class MemoryBrowser : public BrowserEngine {
public:
    struct Navigation {
        std::string url;
        std::string postData = {};
        std::string headers = {};
        std::string targetFrame = {};
        int frame = -1;  ///< The frame that navigates, from 0; -1: the browser itself.
    };

    /// Drives the control. The map says what lies at an address; a query does not matter, and any
    /// other address gives an empty page.
    explicit MemoryBrowser(WebBrowser& control);
    ~MemoryBrowser() override;

    void Navigate(const std::string& url) override;
    void GoBack() override;
    std::shared_ptr<Document> CurrentDocument() override { return Page; }

    /// A navigation that the page or the user starts.
    void Begin(Navigation navigation) { pending_.push_back(std::move(navigation)); }
    /// The user submits a form of the page, or of a frame of it, with or without a button.
    void Submit(int form, const std::string& button = {}, int frame = -1);
    /// Carries out what waits: each navigation is announced, its page is put in place and completes.
    /// Ends after `limit` navigations, so that pages that lead to each other do not hang a test.
    void Deliver(int limit = 20);
    /// Announces that the present document of the address completed (again).
    void Complete(const std::string& url);

    std::map<std::string, PageSketch> Site;
    const std::shared_ptr<Journal> Log = std::make_shared<Journal>();
    std::shared_ptr<MemoryDocument> Page;
    std::vector<std::string> Visited;  ///< Addresses in the order in which they were asked for.
    std::vector<Navigation> Sent;      ///< The same with bodies, as a server sees them.

private:
    void CarryOut(const Navigation& navigation);
    void Show(const std::string& url);
    void ShowInFrame(const std::string& url, int frame);
    std::shared_ptr<MemoryDocument> Load(const std::string& url);
    void Begin(MemoryDocument& page, const std::string& address, int form, const MemoryControl* pressed, int frame);

    WebBrowser& control_;
    std::deque<Navigation> pending_;
    std::vector<std::string> history_;
};

}  // namespace velmora::test
