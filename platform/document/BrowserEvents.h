// The events of a browser on their way to the program: in their order, one at a time, and not without end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Turns.h"
#include "platform/controls/WebBrowser.h"
#include "platform/document/PageEvents.h"

namespace velmora {

/// While an event is being handled, a question to the user included, the later ones wait, a navigation's
/// decision among them. Of what would wait without end some is dropped: a second submission by script, a
/// document's earlier completion, navigations beyond a thousand.
class BrowserEvents : public PageListener {
public:
    /// Lets a navigation go on, or stops it. Called once.
    using Decide = std::function<void(bool goesOn)>;
    /// The address to report for a document that has finished; nothing if it is not what the view shows.
    using Reported = std::function<std::optional<std::string>(const std::string& url, bool isTop)>;

    struct Navigation {
        std::string url;
        std::string headers;
        std::optional<PageAction> cause;
        PagePlace from;  ///< The document that navigates where no cause is known.
    };

    BrowserEvents(WebBrowser& control, Turns& turns, std::shared_ptr<PageTime> time, Reported reported)
        : control_(control), turns_(turns), time_(std::move(time)), reported_(std::move(reported))
    {
    }

    /// Announces a navigation; when its handler has run, `decide` is called.
    void Announce(Navigation navigation, const Decide& decide);
    /// Nothing is loading any more. If a navigation was announced and no document has come of it, the
    /// program is told so; false if a document that has begun may still finish.
    bool Rest();
    /// A page asks for a window: the program decides. What cannot be asked now is refused, and so are
    /// further windows after several refusals between which the user has done nothing.
    bool AllowsWindow();
    /// The user has pressed a key or a button, or goes to another page.
    void NoteUserAct();

    void OnBegun(const PagePlace& place, const std::string& url, bool isTop) override;
    void OnFinished(const PagePlace& place, const std::string& url, bool isTop,
                    std::vector<std::string> laterForms) override;
    bool TakesSubmissions() const override;
    void OnSubmitted(PageSubmission submission) override;

private:
    enum class Kind { Navigation, Submission, Finished, FormsAdded, Ended };

    struct Item {
        Kind kind;
        wire::DocumentName document;
        std::size_t bytes;
        std::function<void()> handle;
    };

    /// False if there is no room; the item is dropped.
    bool Add(Item item);
    void HandleNext();
    void HandleNavigation(const Navigation& navigation);
    void HandleSubmission(const PageSubmission& submission);
    /// Announces what the user sends with a document from which something was sent before, which stayed, or
    /// with a form that has come to it.
    void Resume(const PageAction& action);
    bool Waits(Kind kind) const;
    /// Whether a document is gone. What a page says of its end comes too late where it can be told.
    static bool IsGone(const PagePlace& place);
    /// Tells of a document that has finished, or of forms that have come to one.
    void Complete(const PagePlace& place, const std::string& url, const std::vector<std::string>& laterForms);
    /// Takes a document's completion out of those that wait.
    void ForgetFinished(const wire::DocumentName& document);

    WebBrowser& control_;
    Turns& turns_;
    std::shared_ptr<PageTime> time_;
    Reported reported_;
    std::deque<Item> items_;
    std::size_t turnsToCome_ = 0;  ///< Posted and not begun; as many as there are items, or more.
    bool isAwaited_ = false;       ///< A navigation was announced, and no document has finished since.
    int refusals_ = 0;             ///< Of windows, since the user last did anything.

    /// When the documents began that have not finished, by page and frame.
    std::map<std::pair<const PageChannel*, std::uint64_t>, Clock::time_point> unfinished_;
    /// A document that has finished or sent something, and what the user had done in it when it sent last.
    struct Sender {
        wire::DocumentName document;
        std::optional<std::uint64_t> userActs;
        bool isRepeated = false;  ///< Its address had just finished before, without an act of the user since.
    };
    Sender* Find(const wire::DocumentName& document);
    Sender& FindOrAdd(const wire::DocumentName& document);
    std::deque<Sender> senders_;
    std::string lastFinished_;  ///< The address of the last document that finished since the user's last act.

    wire::DocumentName lastSender_;  ///< The document that last navigated by a form, and when.
    std::uint64_t lastSent_ = 0;     ///< In milliseconds since 1970.
};

}  // namespace velmora
