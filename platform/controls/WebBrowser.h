// The browser control.
#pragma once

#include <memory>
#include <string>

#include "platform/Document.h"
#include "platform/controls/Controls.h"

namespace velmora {

/// A navigation that is about to begin.
struct BeforeNavigate2Event {
    BrowserObject& pDisp;  ///< The page or frame that navigates or holds the form; still its old document.
    std::string URL;
    long Flags = 0;
    std::string TargetFrameName;  ///< Empty when there is none.
    std::string PostData;         ///< The bytes of the request body; empty when there is none.
    std::string Headers;          ///< "Name: value", each line ended by CR LF.
    bool Cancel = false;
};

/// What drives a WebBrowser control: the web engine, or a stand-in.
class BrowserEngine {
public:
    virtual ~BrowserEngine() = default;
    virtual void Navigate(const std::string& url) = 0;
    virtual void GoBack() = 0;
    virtual std::shared_ptr<Document> CurrentDocument() = 0;
};

/// The browser control. Calls return at once; results come as events, one at a time: while one is being
/// handled, the next ones wait. The engine attaches itself; without one, calls do nothing and the document
/// cannot be read.
class WebBrowser : public Control, public BrowserObject {
public:
    static constexpr int kCommandBack = 2;

    using Control::Control;

    /// Loads an address. An empty one gives an empty page, one without a scheme is taken for a web
    /// address; one that cannot be loaded gives a page that says so.
    void Navigate(const std::string& url);
    /// The same; the logic keeps both names apart by who asks: the user's Go, or a menu item.
    void Navigate2(const std::string& url);
    void GoBack();
    std::shared_ptr<velmora::Document> Document() override;

    Event<BeforeNavigate2Event&> BeforeNavigate2;
    Event<BrowserObject&, const std::string&> DocumentComplete;  ///< The finished document, its address.
    /// A navigation that was announced ended without a document: a download, an answer without a page, a
    /// load that was broken off, a place in the page that is shown.
    Event<> NavigationEnded;
    /// The user goes on with a document (and its address) that stayed after something was sent with it, or
    /// to which a form has come.
    /// Comes before the BeforeNavigate2 of what is sent next.
    Event<BrowserObject&, const std::string&> DocumentResumed;
    /// Forms have come into a document (and its address) that had finished. Its DocumentComplete follows,
    /// about them alone.
    Event<BrowserObject&, const std::string&> FormsAdded;
    /// Set true to refuse the window. True from the start: the browser has refused it already, since the
    /// user could not be asked.
    Event<bool&> NewWindow2;
    Event<int, bool> CommandStateChange;  ///< A command, whether it is to be had.

    void Attach(BrowserEngine* engine) { engine_ = engine; }

private:
    BrowserEngine* engine_ = nullptr;
};

}  // namespace velmora
