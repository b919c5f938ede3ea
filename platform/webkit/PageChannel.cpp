#include "platform/webkit/PageChannel.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

// A page that is busy for longer than this counts as one that does not answer. The window stands
// still meanwhile, so it is short; a page's answer takes a fraction of a millisecond as a rule.
constexpr std::chrono::seconds kLongestWait{5};

// All waits of one turn together: a page that takes its time for each of a hundred answers must not
// hold the window either.
constexpr std::chrono::seconds kLongestTurn{10};

// An answer is taken in pieces of this size, so that a length that lies costs no memory.
constexpr std::size_t kPiece = std::size_t{1} << 20;

}  // namespace

PageChannel::PageChannel()
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

void PageChannel::EndTurn()
{
    if (descriptor_ < 0) return;
    const wire::RequestHeader header{.bodyBytes = 0, .operation = wire::kDone, .frame = 0};
    // A socket that takes not even this at once belongs to a page that does not answer.
    if (!SendAll(descriptor_, &header, sizeof header, Clock::now())) Close();
}

std::string PageChannel::Read(std::uint64_t frame, const std::vector<std::string>& request)
{
    return Request(frame, wire::kRead, wire::Pack(request));
}

void PageChannel::Write(std::uint64_t frame, const std::vector<std::string>& request)
{
    ++versions_[frame].writes;
    Request(frame, wire::kWrite, wire::Pack(request));
}

std::string PageChannel::Markup(std::uint64_t frame) { return Request(frame, wire::kMarkup, {}); }

void PageChannel::Click(std::uint64_t frame, const std::string& handle)
{
    ++versions_[frame].writes;
    Request(frame, wire::kClick, handle);
}

void PageChannel::BeginDocument(std::uint64_t frame)
{
    // What counts is that a held document is told from a new one; frames that nobody has asked about
    // need no entry, so a page that invents frames without end costs nothing.
    const auto known = versions_.find(frame);
    if (known != versions_.end()) ++known->second.document;
}

FrameVersion PageChannel::Version(std::uint64_t frame) const
{
    const auto found = versions_.find(frame);
    return found == versions_.end() ? FrameVersion{} : found->second;
}

std::string PageChannel::Request(std::uint64_t frame, wire::Operation operation, const std::string& body)
{
    if (descriptor_ < 0) throw DocumentError("the page does not answer");
    if (body.size() > wire::kLongestRequest) throw DocumentError("the request is too long");

    const auto start = Clock::now();
    const auto deadline = start + std::min<Clock::duration>(kLongestWait, kLongestTurn - waited_);
    Send(frame, operation, body, deadline);
    std::string answer =
        Receive(frame, operation == wire::kMarkup ? wire::kLongestAnswer : wire::kLongestFacts, deadline);
    waited_ += Clock::now() - start;
    return answer;
}

void PageChannel::Send(std::uint64_t frame, wire::Operation operation, const std::string& body,
                       Clock::time_point deadline)
{
    const wire::RequestHeader header{
        .bodyBytes = static_cast<std::uint32_t>(body.size()), .operation = operation, .frame = frame};
    std::string message(reinterpret_cast<const char*>(&header), sizeof header);
    message += body;
    if (!SendAll(descriptor_, message.data(), message.size(), deadline)) Fail("the page does not answer");
}

std::string PageChannel::Receive(std::uint64_t frame, std::uint32_t longest, Clock::time_point deadline)
{
    wire::AnswerHeader header{};
    if (!ReceiveAll(descriptor_, &header, sizeof header, deadline)) Fail("the page does not answer");
    if (header.bodyBytes > longest) Fail("the page's answer is too long");
    std::string text;
    while (text.size() < header.bodyBytes) {
        const std::size_t have = text.size();
        text.resize(std::min<std::size_t>(header.bodyBytes, std::max(kPiece, 2 * have)));
        if (!ReceiveAll(descriptor_, text.data() + have, text.size() - have, deadline)) {
            Fail("the page's answer broke off");
        }
    }
    versions_[frame].revision = header.revision;
    if (header.failed != 0) throw DocumentError(text);
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
