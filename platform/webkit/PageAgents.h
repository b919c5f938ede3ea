// What the page agents of a view tell, and the channels to them.
#pragma once

#include <webkit/webkit.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <optional>
#include <string>

#include "platform/webkit/PageDocument.h"

namespace velmora {

/// A navigation that a page is about to start, as its agent saw it.
struct PageAction {
    std::string url;  ///< Where it goes; a get form's without its fields.
    bool isForm = false;
    std::string method;  ///< "get" or "post".
    std::string target;  ///< Name of the target frame; empty when none is named.
    PagePlace place;     ///< The frame that navigates; no channel if it is not known.
    std::string body;    ///< Of a post, in the default encoding whatever the form's own is.
};

class PageAgents {
public:
    /// A document has finished: its frame, its address.
    using Finished = std::function<void(const PagePlace&, const std::string& url)>;

    /// A page's own script has sent a form: what a navigation would have been, the frame and address of
    /// the document, the time (milliseconds since 1970), the form as it was.
    struct Submission {
        PageAction action;
        PagePlace place;
        std::string url;
        std::uint64_t time = 0;
        FormSnapshot form;
    };
    using Submitted = std::function<void(const Submission&)>;

    PageAgents(Finished finished, Submitted submitted)
        : finished_(std::move(finished)), submitted_(std::move(submitted))
    {
    }

    /// Handles a message of an agent; false if it is none. A malformed one is dropped.
    bool Take(WebKitUserMessage* message);

    /// The frame of the page that is shown; without a channel if there is none.
    const PagePlace& Top() const { return top_; }

    /// The action that led to a navigation: the latest of that kind, address and, for a form, method.
    /// It is given once.
    std::optional<PageAction> TakeAction(bool isForm, const std::string& url, const std::string& method);

private:
    struct Agent {
        std::uint64_t number;
        std::shared_ptr<PageChannel> channel;
    };

    void Dispatch(const std::string& name, wire::Reader& reader, std::uint64_t agent, std::uint64_t frame);
    void AnswerHello(WebKitUserMessage* message, std::uint64_t number);
    std::shared_ptr<PageChannel> ChannelOf(std::uint64_t number) const;
    PageAction ReadAction(wire::Reader& reader, std::uint64_t agent, std::uint64_t frame) const;
    Submission ReadSubmission(wire::Reader& reader, std::uint64_t agent, std::uint64_t frame) const;
    PagePlace TargetPlace(std::uint64_t agent, std::uint64_t frame, std::uint64_t target) const;
    void Remember(PageAction action);

    Finished finished_;
    Submitted submitted_;
    std::list<Agent> agents_;  // the latest first
    std::deque<PageAction> actions_;
    PagePlace top_;
};

}  // namespace velmora
