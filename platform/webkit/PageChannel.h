// The program's end of the channel to a page agent: synchronous requests on a page's documents.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/Browser.h"
#include "platform/page/Socket.h"
#include "platform/page/Wire.h"

namespace velmora {

/// What is known of a frame's forms is good as long as these stay the same.
struct FrameVersion {
    std::uint64_t document = 0;  ///< Which document of the frame it is.
    std::uint64_t revision = 0;  ///< Changes of the structure: which forms, elements and options there are.
    std::uint64_t writes = 0;    ///< Writes by the program; any may have changed values elsewhere.
};

/// A request blocks, letting no event in, until the page answers, hangs up or has used up its time;
/// the last two close the channel. Whatever goes wrong throws DocumentError.
class PageChannel {
public:
    /// Makes the pair of sockets; throws DocumentError if the system refuses.
    PageChannel();
    ~PageChannel();
    PageChannel(const PageChannel&) = delete;
    PageChannel& operator=(const PageChannel&) = delete;

    /// The descriptor for the agent, given out once; the caller closes it.
    int TakeAgentEnd();

    /// The page gets its time anew. To be called when an event of the page is about to be handled.
    void BeginTurn() { waited_ = {}; }
    /// Nothing more is asked for this event: the page need not wait.
    void EndTurn();

    /// The packed answer to a read of a document.
    std::string Read(std::uint64_t frame, const std::vector<std::string>& request);
    /// A write: the page's own handlers run before it returns.
    void Write(std::uint64_t frame, const std::vector<std::string>& request);
    std::string Markup(std::uint64_t frame);
    /// Returns at once; the click follows.
    void Click(std::uint64_t frame, const std::string& handle);

    FrameVersion Version(std::uint64_t frame) const;
    /// A new document has begun in the frame.
    void BeginDocument(std::uint64_t frame);

private:
    std::string Request(std::uint64_t frame, wire::Operation operation, const std::string& body);
    void Send(std::uint64_t frame, wire::Operation operation, const std::string& body, Clock::time_point deadline);
    std::string Receive(std::uint64_t frame, std::uint32_t longest, Clock::time_point deadline);
    [[noreturn]] void Fail(const std::string& reason);
    void Close();

    int descriptor_ = -1;
    int agentEnd_ = -1;
    Clock::duration waited_{};
    std::map<std::uint64_t, FrameVersion> versions_;
};

}  // namespace velmora
