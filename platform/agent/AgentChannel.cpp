#include "platform/agent/AgentChannel.h"

#include <glib-unix.h>
#include <unistd.h>

#include <utility>

#include "platform/wire/Socket.h"

namespace velmora {

namespace {

// A program that takes longer than this to send the rest of a request, or to take an answer, has
// given the channel up.
constexpr std::chrono::seconds kPatience{10};

// Requests come in bursts, one as soon as the last is answered. Waiting this long for the next one
// saves a turn of the main loop for each; the page stands still for no longer at the burst's end.
constexpr std::chrono::milliseconds kBurstPause{1};

// While the program handles a finished document it says when it is done. Only if a question to the
// user holds it up is this the time that the page waits.
constexpr std::chrono::milliseconds kTurnPause{20};

// Before every source of the engine's own.
constexpr int kPriority = G_PRIORITY_HIGH * 2;

}  // namespace

AgentChannel::AgentChannel(int descriptor, Serve serve, Revision revision, std::function<void()> closed)
    : descriptor_(descriptor), serve_(std::move(serve)), revision_(std::move(revision)), closed_(std::move(closed))
{
    source_ = g_unix_fd_add_full(kPriority, descriptor_, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR),
                                 OnReadable, this, nullptr);
}

AgentChannel::~AgentChannel()
{
    if (source_ != 0) g_source_remove(source_);
    close(descriptor_);
}

bool AgentChannel::ServeInPage(bool isFirst)
{
    // The scripts may come to this while a write is served, and that of a document that finishes meanwhile between two
    // calls of another's: what else is there has to wait for its end.
    if (isServing_ || (isFirst && underWay_)) return false;
    if (underWay_ && !GoOn()) return false;
    while (!underWay_ && WaitFor(descriptor_, POLLIN, Clock::now() + kTurnPause)) {
        const auto operation = NextOperation();
        if (operation != wire::kRead && operation != wire::kWrite) return false;
        if (!ServeOne()) return false;
    }
    return underWay_.has_value();
}

std::optional<std::uint32_t> AgentChannel::NextOperation() const
{
    wire::RequestHeader header{};
    if (recv(descriptor_, &header, sizeof header, MSG_PEEK | MSG_DONTWAIT) != sizeof header) return std::nullopt;
    return header.operation;
}

gboolean AgentChannel::OnReadable(gint, GIOCondition, gpointer data)
{
    auto* self = static_cast<AgentChannel*>(data);
    if (self->ServeBurst()) return G_SOURCE_CONTINUE;
    self->source_ = 0;
    const auto closed = std::move(self->closed_);
    closed();  // destroys this channel
    return G_SOURCE_REMOVE;
}

bool AgentChannel::ServeBurst()
{
    // Out of the page, its promises run at the end of each call of a script.
    do {
        if (underWay_ ? !GoOn() : !ServeOne()) return false;
    } while (underWay_ || WaitFor(descriptor_, POLLIN, Clock::now() + kBurstPause));
    return true;
}

bool AgentChannel::ServeOne()
{
    wire::RequestHeader header{};
    std::string body;
    return Receive(header, body) && Proceed(header, &body);
}

bool AgentChannel::Proceed(wire::RequestHeader header, const std::string* body)
{
    isServing_ = true;
    const std::optional<Answer> answer = serve_(header, body);
    isServing_ = false;
    underWay_ = answer ? std::nullopt : std::optional(header);
    return !answer || header.operation == wire::kDone || Send(header, *answer);
}

bool AgentChannel::Receive(wire::RequestHeader& header, std::string& body)
{
    const auto deadline = Clock::now() + kPatience;
    if (!ReceiveAll(descriptor_, &header, sizeof header, deadline)) return false;
    if (header.bodyBytes > wire::kLongestRequest) return false;
    body.resize(header.bodyBytes);
    return ReceiveAll(descriptor_, body.data(), body.size(), deadline);
}

bool AgentChannel::Send(const wire::RequestHeader& request, const Answer& answer)
{
    if (answer.body.size() > wire::kLongestAnswer) {
        return Send(request, {.outcome = wire::kRefused, .body = "the answer is too long"});
    }
    const wire::AnswerHeader header{.bodyBytes = static_cast<std::uint32_t>(answer.body.size()),
                                    .outcome = answer.outcome,
                                    .revision = revision_(request)};
    const auto deadline = Clock::now() + kPatience;
    return SendAll(descriptor_, &header, sizeof header, deadline) &&
           SendAll(descriptor_, answer.body.data(), answer.body.size(), deadline);
}

}  // namespace velmora
