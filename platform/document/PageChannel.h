// The program's end of the channel to a page agent: requests on a page's documents.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Document.h"
#include "platform/wire/Socket.h"
#include "platform/wire/Wire.h"

namespace velmora {

/// What the pages of one browser have used of the program's time: in this turn, and since the user last did
/// anything. Beyond a limit every request fails at once.
struct PageTime {
    Clock::duration turn{};
    Clock::duration sinceAct{};
};

/// What is known of a document's forms is good as long as these stay the same.
struct DocumentVersion {
    std::uint64_t revision = 0;  ///< Changes of the structure: which forms, elements and options there are.
    std::uint64_t writes = 0;    ///< Writes by the program; any may have changed values elsewhere.
};

/// A request returns when the page has answered, has hung up or has used up its time; the last two close
/// the channel. Whatever goes wrong throws DocumentError.
class PageChannel {
public:
    /// Makes the pair of sockets; throws DocumentError if the system refuses. `wait` says how the program
    /// spends the time until an answer comes.
    explicit PageChannel(Wait wait = WaitFor, std::shared_ptr<PageTime> time = std::make_shared<PageTime>());
    ~PageChannel();
    PageChannel(const PageChannel&) = delete;
    PageChannel& operator=(const PageChannel&) = delete;

    /// The descriptor for the agent, given out once; the caller closes it.
    int TakeAgentEnd();

    /// An event of the page is about to be handled: it gets its time for a turn anew.
    void BeginTurn();
    /// Nothing more is asked for this event: the page need not wait.
    void EndTurn();

    /// Reads a document; `parse` makes the result of the packed answer, on the page's time. An answer that
    /// makes no sense is a DocumentError like any other.
    template <class Parse>
    auto Read(const wire::DocumentName& document, const std::vector<std::string>& request, Parse parse)
    {
        const Use use(*time_);
        return Parsed(Request(document, wire::kRead, wire::Pack(request)), parse);
    }
    /// A write: the page's own handlers run before it returns.
    void Write(const wire::DocumentName& document, const std::vector<std::string>& request);
    /// Several writes in one trip: the next begins when the page's handlers for the last have run. Once one has changed
    /// the structure, or it takes long, those after it are not tried. Gives how many were; at least the first is. One
    /// that is refused throws, and those after it are not tried either.
    std::size_t WriteAll(const wire::DocumentName& document, const std::vector<std::vector<std::string>>& requests);
    /// Returns at once; the click follows.
    void Click(const wire::DocumentName& document, const std::string& handle);

    /// Lets time pass, in which the page and the main loop run; counted as the page's time.
    void Pause(Clock::duration time);

    /// Whether the page has answered in this turn, and so lately that it waits for what is asked next: it stands as it
    /// was read.
    bool HasJustAnswered() const;

    DocumentVersion Version(const wire::DocumentName& document) const;

private:
    /// Counts the time of its life.
    class Use {
    public:
        explicit Use(PageTime& time) : time_(time) {}
        ~Use();

    private:
        PageTime& time_;
        const Clock::time_point start_ = Clock::now();
    };

    template <class Parse>
    static auto Parsed(const std::string& answer, Parse parse)
    {
        try {
            wire::Reader reader(answer);
            auto result = parse(reader);
            reader.End();
            return result;
        } catch (const wire::WireError& error) {
            throw DocumentError(error.what());
        }
    }

    std::string Request(const wire::DocumentName& document, wire::Operation operation, const std::string& body);
    /// The end of the time that the page has for all that is asked from now on.
    Clock::time_point EndOfTime() const;
    /// Lets events in if the window has been held for long.
    void Breathe();
    std::string Receive(const wire::DocumentName& document, Clock::time_point deadline);
    [[noreturn]] void Fail(const std::string& reason);
    void Close();

    Wait wait_;
    std::shared_ptr<PageTime> time_;
    int descriptor_ = -1;
    int agentEnd_ = -1;
    Clock::time_point heldSince_;   ///< When the main loop last came to its other events, as far as is known.
    Clock::time_point answeredAt_;  ///< In this turn.
    std::uint64_t writes_ = 0;
    std::map<std::uint64_t, std::uint64_t> revisions_;  ///< By the number of the document, for this turn.
};

/// One document of a page: its agent's channel and its name there.
struct PagePlace {
    std::shared_ptr<PageChannel> channel;
    wire::DocumentName document;
};

/// The turn of an event of a page: what is asked of the page is asked between its beginning and its end.
class PageTurn {
public:
    explicit PageTurn(const PagePlace& place) : channel_(place.channel)
    {
        if (channel_) channel_->BeginTurn();
    }
    ~PageTurn()
    {
        if (channel_) channel_->EndTurn();
    }
    PageTurn(const PageTurn&) = delete;
    PageTurn& operator=(const PageTurn&) = delete;

private:
    std::shared_ptr<PageChannel> channel_;
};

}  // namespace velmora
