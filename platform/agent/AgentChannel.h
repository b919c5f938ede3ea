// The agent's end of the channel on which the program reads and writes documents.
#pragma once

#include <glib.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/wire/Wire.h"

namespace velmora {

/// Takes requests from a socket, one at a time, on the main loop, and sends the answers. When the
/// program hangs up, or does not take an answer in time, the channel closes itself and says so.
class AgentChannel {
public:
    struct Answer {
        wire::Outcome outcome = wire::kServed;
        std::string body;
    };
    /// Serves a request, or, without a body, goes on with it. No answer: it is to be gone on with when the page's own
    /// promises have run.
    using Serve = std::function<std::optional<Answer>(const wire::RequestHeader&, const std::string* body)>;
    /// How often the structure of a document's forms has changed; asked when an answer goes out.
    using Revision = std::function<std::uint64_t(const wire::RequestHeader&)>;

    /// Takes over the descriptor.
    AgentChannel(int descriptor, Serve serve, Revision revision, std::function<void()> closed);
    ~AgentChannel();

    /// Waits a moment for requests and serves them, from inside a document's last event: what the engine
    /// does after it, the layout of the whole page, can take long, and the program stands still until it
    /// has its answers. True if a request is to be gone on with: by the next call, which is to come when the
    /// page's promises have run. False when there is nothing more to serve here, as at the first call for a
    /// document while a request of another is under way.
    bool ServeInPage(bool isFirst);

    AgentChannel(const AgentChannel&) = delete;
    AgentChannel& operator=(const AgentChannel&) = delete;

private:
    static gboolean OnReadable(gint descriptor, GIOCondition condition, gpointer self);
    bool ServeBurst();
    bool ServeOne();
    bool GoOn() { return Proceed(*underWay_, nullptr); }
    bool Proceed(wire::RequestHeader header, const std::string* body);
    bool Receive(wire::RequestHeader& header, std::string& body);
    bool Send(const wire::RequestHeader& request, const Answer& answer);
    /// The operation of the request that waits; nothing if none has arrived whole.
    std::optional<std::uint32_t> NextOperation() const;

    int descriptor_;
    Serve serve_;
    Revision revision_;
    std::function<void()> closed_;
    std::optional<wire::RequestHeader> underWay_;  ///< The request that is to be gone on with.
    bool isServing_ = false;
    guint source_ = 0;
};

}  // namespace velmora
