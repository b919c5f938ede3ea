#include "platform/document/PageChannel.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

// A page that is busy for longer than this counts as one that does not answer; an answer takes a
// fraction of a millisecond as a rule.
constexpr std::chrono::seconds kLongestWait{5};

// All requests of one turn together: a page that takes its time for each of a hundred answers must not
// keep the user waiting either.
constexpr std::chrono::seconds kLongestTurn{10};

// All requests since the user last did anything: a page that finishes over and over must not keep the
// program busy for ever.
constexpr std::chrono::seconds kLongestSinceAct{20};

// A read of the largest forms takes less, and no script of the page runs in it. In a write one may ask the engine
// something, and then waits for the main loop.
constexpr std::chrono::milliseconds kUsualRead{100};
constexpr std::chrono::milliseconds kUsualWrite{10};

// A page waits at least this long for the next request of a turn (kTurnPause of the agent is twice as much).
constexpr std::chrono::milliseconds kSurelyStill{10};

// Many quick answers in a row hold the window as one slow answer does. After so long its events come in for
// a moment.
constexpr std::chrono::milliseconds kLongestHold{100};
constexpr std::chrono::milliseconds kBreath{5};

// An answer is taken in pieces of this size, so that a length that lies costs no memory.
constexpr std::size_t kPiece = std::size_t{1} << 20;

/// Until when a page may take over what is next, if all its time has this end.
Clock::time_point NextDeadline(Clock::time_point end) { return std::min(end, Clock::now() + kLongestWait); }

}  // namespace

PageChannel::Use::~Use()
{
    const auto used = Clock::now() - start_;
    time_.turn += used;
    time_.sinceAct += used;
}

PageChannel::PageChannel(Wait wait, std::shared_ptr<PageTime> time) : wait_(std::move(wait)), time_(std::move(time))
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        throw DocumentError("no channel to the page can be made");
    }
    descriptor_ = ends[0];
    agentEnd_ = ends[1];
}

PageChannel::~PageChannel()
{
    Close();
    if (agentEnd_ >= 0) close(agentEnd_);
}

int PageChannel::TakeAgentEnd() { return std::exchange(agentEnd_, -1); }

void PageChannel::BeginTurn()
{
    time_->turn = {};
    heldSince_ = Clock::now();
    answeredAt_ = {};
    revisions_.clear();
}

void PageChannel::EndTurn()
{
    if (descriptor_ < 0) return;
    const wire::RequestHeader header{.bodyBytes = 0, .operation = wire::kDone, .document = {}};
    // A socket that takes not even this at once belongs to a page that does not answer.
    if (!SendAll(descriptor_, &header, sizeof header, Clock::now())) Close();
}

void PageChannel::Write(const wire::DocumentName& document, const std::vector<std::string>& request)
{
    WriteAll(document, {request});
}

std::size_t PageChannel::WriteAll(const wire::DocumentName& document,
                                  const std::vector<std::vector<std::string>>& requests)
{
    if (requests.empty()) return 0;
    const Use use(*time_);
    ++writes_;
    std::string row = wire::Pack({std::to_string(Version(document).revision)});
    std::size_t count = 0;
    for (const auto& request : requests) {
        const std::string next = '\n' + std::to_string(request.size()) + '\n' + wire::Pack(request);
        if (count > 0 && row.size() + next.size() > wire::kLongestRequest) break;
        row += next;
        ++count;
    }
    const std::string answer = Request(document, wire::kWrite, row);
    const auto done = Parsed(answer, [](wire::Reader& reader) { return reader.Number(); });
    if (done == 0 || done > count) throw DocumentError("the page counts its writes wrongly");
    return static_cast<std::size_t>(done);
}

void PageChannel::Click(const wire::DocumentName& document, const std::string& handle)
{
    const Use use(*time_);
    ++writes_;
    Request(document, wire::kClick, handle);
}

void PageChannel::Pause(Clock::duration time)
{
    const Use use(*time_);
    wait_(descriptor_, POLLIN, std::min(NextDeadline(EndOfTime()), Clock::now() + time));
}

bool PageChannel::HasJustAnswered() const { return Clock::now() - answeredAt_ < kSurelyStill; }

DocumentVersion PageChannel::Version(const wire::DocumentName& document) const
{
    const auto known = revisions_.find(document.number);
    return {known == revisions_.end() ? 0 : known->second, writes_};
}

std::string PageChannel::Request(const wire::DocumentName& document, wire::Operation operation, const std::string& body)
{
    if (body.size() > wire::kLongestRequest) throw DocumentError("the request is too long");
    const wire::RequestHeader header{
        .bodyBytes = static_cast<std::uint32_t>(body.size()), .operation = operation, .document = document};
    const std::string message = std::string(reinterpret_cast<const char*>(&header), sizeof header) + body;
    const auto deadline = NextDeadline(EndOfTime());
    Breathe();
    if (descriptor_ < 0) throw DocumentError("the page does not answer");
    if (!SendAll(descriptor_, message.data(), message.size(), deadline, wait_)) Fail("the page does not answer");
    // The main loop need not run so soon, and would draw the page meanwhile.
    const auto usual = operation == wire::kRead ? kUsualRead : kUsualWrite;
    WaitFor(descriptor_, POLLIN, std::min(deadline, Clock::now() + usual));
    return Receive(document, deadline);
}

Clock::time_point PageChannel::EndOfTime() const
{
    const auto left = std::min<Clock::duration>(kLongestTurn - time_->turn, kLongestSinceAct - time_->sinceAct);
    if (left <= Clock::duration::zero()) throw DocumentError("the page has used up its time");
    return Clock::now() + left;
}

void PageChannel::Breathe()
{
    if (descriptor_ < 0 || Clock::now() - heldSince_ <= kLongestHold) return;
    wait_(descriptor_, POLLIN, Clock::now() + kBreath);
    heldSince_ = Clock::now();
}

std::string PageChannel::Receive(const wire::DocumentName& document, Clock::time_point deadline)
{
    wire::AnswerHeader header{};
    if (!ReceiveAll(descriptor_, &header, sizeof header, deadline, wait_)) Fail("the page does not answer");
    if (header.bodyBytes > wire::kLongestAnswer) Fail("the page's answer is too long");
    std::string text;
    while (text.size() < header.bodyBytes) {
        const std::size_t have = text.size();
        text.resize(std::min<std::size_t>(header.bodyBytes, std::max(kPiece, 2 * have)));
        if (!ReceiveAll(descriptor_, text.data() + have, text.size() - have, deadline, wait_)) {
            Fail("the page's answer broke off");
        }
    }
    revisions_[document.number] = header.revision;
    answeredAt_ = Clock::now();
    if (header.outcome != wire::kServed) throw DocumentError(text);
    return text;
}

void PageChannel::Fail(const std::string& reason)
{
    // Closed, so that a late answer can never be taken for the answer to a later request. The agent
    // sees it and asks for a new channel.
    Close();
    throw DocumentError(reason);
}

void PageChannel::Close()
{
    if (descriptor_ >= 0) close(std::exchange(descriptor_, -1));
}

}  // namespace velmora
