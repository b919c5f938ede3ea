#include "platform/document/BrowserEvents.h"

#include <algorithm>
#include <chrono>
#include <numeric>

#include "platform/document/Address.h"
#include "platform/document/PageDocument.h"

namespace velmora {

namespace {

constexpr std::size_t kMostWaiting = 1000;
constexpr std::size_t kMostWaitingBytes = std::size_t{32} << 20;
constexpr std::size_t kMostSenders = 256;
constexpr std::size_t kMostUnfinished = 1000;
constexpr int kMostRefusals = 3;

// A document rests two seconds after its load at the latest, and nothing is loading when this counts.
constexpr std::chrono::seconds kLongestUnfinished{3};
constexpr std::chrono::milliseconds kMoment{100};

// The clocks of two processes, and of a page that is told the time in steps, differ by as much.
constexpr std::uint64_t kClockError = 5;

std::uint64_t Now()
{
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

// --- What comes in --------------------------------------------------------------------------------

void BrowserEvents::Announce(Navigation navigation, const Decide& decide)
{
    if (navigation.cause && navigation.cause->isForm) {
        lastSender_ = navigation.cause->place.document;
        lastSent_ = Now();
    }
    const std::size_t bytes = navigation.url.size() + (navigation.cause ? BytesOf(*navigation.cause) : 0);
    const auto held = std::make_shared<Navigation>(std::move(navigation));
    const auto handle = [this, held, decide] {
        HandleNavigation(*held);
        decide(true);
    };
    if (!Add({Kind::Navigation, held->from.document, bytes, handle})) decide(false);
}

void BrowserEvents::OnBegun(const PagePlace& place, const std::string& url, bool isTop)
{
    if (isTop) unfinished_.clear();
    // The empty document with which a frame begins finishes only if nothing else is loaded into it.
    if (url == "about:blank" || unfinished_.size() >= kMostUnfinished) return;
    unfinished_[{place.channel.get(), place.document.frame}] = Clock::now();
}

void BrowserEvents::OnFinished(const PagePlace& place, const std::string& url, bool isTop,
                               std::vector<std::string> laterForms)
{
    unfinished_.erase({place.channel.get(), place.document.frame});
    const auto address = reported_(url, isTop);
    if (!address) return;
    const std::size_t bytes = std::accumulate(
        laterForms.begin(), laterForms.end(), address->size(),
        [](std::size_t sum, const std::string& handle) { return sum + sizeof(std::string) + handle.size(); });
    const bool isWhole = laterForms.empty();
    if (isWhole) ForgetFinished(place.document);
    // The page may be on its way elsewhere when a form comes.
    if (!isWhole && isAwaited_) return;
    const auto begun = Clock::now();
    const auto handle = [this, place, begun, url = *address, laterForms = std::move(laterForms)] {
        // One that has waited for an answer of the user may have been taken out of its page meanwhile.
        if (Clock::now() - begun > kMoment && IsGone(place)) return;
        Complete(place, url, laterForms);
    };
    Add({isWhole ? Kind::Finished : Kind::FormsAdded, place.document, bytes, handle});
}

bool BrowserEvents::TakesSubmissions() const { return !Waits(Kind::Submission); }

void BrowserEvents::OnSubmitted(PageSubmission submission)
{
    // The script may have submitted the form in the ordinary way after all; that was announced.
    const PagePlace& place = submission.action.place;
    if (lastSender_ == place.document && lastSent_ + kClockError >= submission.time) return;
    const auto held = std::make_shared<PageSubmission>(std::move(submission));
    Add({Kind::Submission, place.document, BytesOf(held->action), [this, held] { HandleSubmission(*held); }});
}

bool BrowserEvents::Rest()
{
    // A frame may be taken out of its page before its document finishes, and nobody tells.
    std::erase_if(unfinished_, [](const auto& each) { return Clock::now() - each.second > kLongestUnfinished; });
    if (!unfinished_.empty()) return false;
    if (!isAwaited_ || !items_.empty()) return true;
    Add({Kind::Ended, {}, 0, [this] {
             isAwaited_ = false;
             control_.NavigationEnded.Raise();
         }});
    return true;
}

bool BrowserEvents::AllowsWindow()
{
    bool cancel = false;
    const bool isAsked = refusals_ < kMostRefusals && turns_.TakeAtOnce([&] { control_.NewWindow2.Raise(cancel); });
    if (!isAsked) {
        cancel = true;
        control_.NewWindow2.Raise(cancel);
    }
    refusals_ = cancel ? refusals_ + 1 : 0;
    return !cancel;
}

void BrowserEvents::NoteUserAct()
{
    refusals_ = 0;
    time_->sinceAct = {};
    lastFinished_.clear();
    for (Sender& sender : senders_) sender.isRepeated = false;
}

// --- What waits -----------------------------------------------------------------------------------

bool BrowserEvents::Add(Item item)
{
    const std::size_t bytes = std::accumulate(items_.begin(), items_.end(), item.bytes,
                                              [](std::size_t sum, const Item& each) { return sum + each.bytes; });
    if (items_.size() >= kMostWaiting || bytes > kMostWaitingBytes) return false;
    items_.push_back(std::move(item));
    // An item that was dropped has left its turn behind.
    if (turnsToCome_ >= items_.size()) return true;
    ++turnsToCome_;
    turns_.Post([this] { HandleNext(); });
    return true;
}

bool BrowserEvents::Waits(Kind kind) const
{
    return std::any_of(items_.begin(), items_.end(), [kind](const Item& item) { return item.kind == kind; });
}

bool BrowserEvents::IsGone(const PagePlace& place)
{
    try {
        const PageTurn turn(place);
        OpenDocument(place);
        return false;
    } catch (const DocumentError&) {
        return true;
    }
}

void BrowserEvents::ForgetFinished(const wire::DocumentName& document)
{
    std::erase_if(items_, [&](const Item& item) {
        return (item.kind == Kind::Finished || item.kind == Kind::FormsAdded) && item.document == document;
    });
}

// --- What goes out --------------------------------------------------------------------------------

void BrowserEvents::Complete(const PagePlace& place, const std::string& url, const std::vector<std::string>& laterForms)
{
    const PageTurn turn(place);
    if (!laterForms.empty()) {
        const Sender* const known = Find(place.document);
        PageFrame frame(place, {FormOrder::Kind::Only, laterForms});
        // A page that answers a form at its own address must not be filled for ever.
        if (known && !known->isRepeated) control_.FormsAdded.Raise(frame, url);
        control_.DocumentComplete.Raise(frame, url);
        return;
    }
    isAwaited_ = false;
    FindOrAdd(place.document).isRepeated = std::exchange(lastFinished_, url) == url;
    PageFrame frame(place);
    control_.DocumentComplete.Raise(frame, url);
}

void BrowserEvents::HandleNext()
{
    --turnsToCome_;
    if (items_.empty()) return;
    const Item next = std::move(items_.front());
    items_.pop_front();
    next.handle();
}

void BrowserEvents::HandleNavigation(const Navigation& navigation)
{
    const PagePlace& place = navigation.cause ? navigation.cause->place : navigation.from;
    const PageTurn turn(place);
    // What a record is made of is the form that was sent, not another that goes to the same address.
    const bool isForm = navigation.cause && navigation.cause->isForm;
    PageFrame frame(place, isForm ? FormOrder{FormOrder::Kind::First, {navigation.cause->form}} : FormOrder{});
    // A form's address is compared with actions, which have no fragment.
    BeforeNavigate2Event event{.pDisp = frame,
                               .URL = isForm ? WithoutFragment(navigation.url) : navigation.url,
                               .TargetFrameName = {},
                               .PostData = {},
                               .Headers = navigation.headers};
    if (navigation.cause) {
        event.TargetFrameName = navigation.cause->target;
        event.PostData = navigation.cause->body;
        if (isForm) Resume(*navigation.cause);
    }
    isAwaited_ = true;
    control_.BeforeNavigate2.Raise(event);
}

void BrowserEvents::HandleSubmission(const PageSubmission& submission)
{
    const PageAction& action = submission.action;
    SubmittedFrame frame(action.place, submission.form);
    BeforeNavigate2Event event{.pDisp = frame,
                               .URL = WithoutFragment(action.url),
                               .TargetFrameName = action.target,
                               .PostData = {},
                               .Headers = {}};
    if (action.method == "post") {
        event.PostData = action.body;
    } else {
        event.URL = WithoutQuery(action.url) + "?" + action.body;
    }
    {
        const PageTurn turn(action.place);
        Resume(action);
        control_.BeforeNavigate2.Raise(event);
    }
    // The page stays; but it may be on its way elsewhere all the same.
    if (!isAwaited_) control_.NavigationEnded.Raise();
}

void BrowserEvents::Resume(const PageAction& action)
{
    Sender& sender = FindOrAdd(action.place.document);
    const bool hasStayed = sender.userActs && action.userActs > *sender.userActs;
    sender.userActs = action.userActs;
    if (!hasStayed && !action.isNews) return;
    PageFrame frame(action.place);
    control_.DocumentResumed.Raise(frame, action.documentUrl);
}

BrowserEvents::Sender* BrowserEvents::Find(const wire::DocumentName& document)
{
    const auto found = std::find_if(senders_.begin(), senders_.end(),
                                    [&](const Sender& sender) { return sender.document == document; });
    return found == senders_.end() ? nullptr : &*found;
}

BrowserEvents::Sender& BrowserEvents::FindOrAdd(const wire::DocumentName& document)
{
    if (Sender* const known = Find(document)) return *known;
    if (senders_.size() >= kMostSenders) senders_.pop_front();
    return senders_.emplace_back(Sender{document, {}});
}

}  // namespace velmora
