// The page agents of a view, and the channels to them.
#pragma once

#include <webkit/webkit.h>

#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "platform/document/PageEvents.h"

namespace velmora {

class PageAgents {
public:
    /// `wait` and `time` are for the channels: see PageChannel. The listener must outlive this.
    PageAgents(PageListener& listener, Wait wait, std::shared_ptr<PageTime> time)
        : listener_(listener), wait_(std::move(wait)), time_(std::move(time))
    {
    }

    /// Handles a message of an agent; false if it is none. A malformed one is dropped, and so is one of an
    /// agent that has no channel.
    bool Take(WebKitUserMessage* message);

    /// The document of the page that is shown; without a channel if there is none.
    const PagePlace& Top() const { return top_; }

    /// The action that led to a navigation: the latest of that kind, address and, for a form, method.
    /// It is given once.
    std::optional<PageAction> TakeAction(bool isForm, const std::string& url, const std::string& method);

private:
    struct Agent {
        std::uint64_t number;
        std::shared_ptr<PageChannel> channel;
    };

    void Dispatch(const std::string& name, wire::Reader& reader, const PagePlace& place);
    void AnswerHello(WebKitUserMessage* message, std::uint64_t number);
    std::shared_ptr<PageChannel> ChannelOf(std::uint64_t number) const;
    void Remember(PageAction action);

    PageListener& listener_;
    Wait wait_;
    std::shared_ptr<PageTime> time_;
    std::list<Agent> agents_;  // the latest first
    std::deque<PageAction> actions_;
    PagePlace top_;
};

}  // namespace velmora
