// The agent's end of the channel on which the program reads and writes documents.
#pragma once

#include <glib.h>

#include <functional>
#include <optional>
#include <string>

#include "platform/page/Wire.h"

namespace velmora {

/// Takes requests from a socket, one at a time, on the main loop, and sends the answers. When the
/// program hangs up, or does not take an answer in time, the channel closes itself and says so.
class AgentChannel {
public:
    struct Answer {
        bool failed = false;
        std::uint64_t revision = 0;
        std::string body;
    };
    using Serve = std::function<Answer(const wire::RequestHeader&, const std::string& body)>;

    /// Takes over the descriptor.
    AgentChannel(int descriptor, Serve serve, std::function<void()> closed);
    ~AgentChannel();
    /// Waits a moment for requests and serves them from here, up to the first write. Called when a
    /// document has finished, from inside its last event: what the engine does next, the layout of
    /// the whole page, can take long, and the program stands still until it has its answers. A write
    /// waits for the main loop, since what the page does in answer to it (promises among it) cannot
    /// run inside an event.
    void ServeReadsNow();

    AgentChannel(const AgentChannel&) = delete;
    AgentChannel& operator=(const AgentChannel&) = delete;

private:
    static gboolean OnReadable(gint descriptor, GIOCondition condition, gpointer self);
    bool ServeBurst();
    bool ServeOne();
    bool NextIsRead() const;
    bool Send(const Answer& answer);

    int descriptor_;
    Serve serve_;
    std::function<void()> closed_;
    guint source_ = 0;
};

}  // namespace velmora
