// A page's process answers as it likes while its document is indexed, read, filled and submitted.
#include <unistd.h>

#include "fuzz/Fuzz.h"
#include "platform/document/PageDocument.h"

namespace velmora::fuzz {

namespace {

// The socket holds as many without a reader.
constexpr std::size_t kMostAnswers = 64;

/// A piece is an answer: its first character is the document's revision, one in capitals a refusal; behind "!" stands
/// what goes out without a header.
std::string AnswerOf(const std::string& piece)
{
    const char kind = piece.empty() ? 'a' : piece[0];
    const std::string body = piece.empty() ? "" : piece.substr(1);
    if (kind == '!') return body;
    const wire::AnswerHeader header{.bodyBytes = static_cast<std::uint32_t>(body.size()),
                                    .outcome = kind >= 'A' && kind <= 'Z',
                                    .revision = static_cast<std::uint64_t>(kind | 0x20)};
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + body;
}

/// The channel to an agent that has said all its answers ahead of the questions, and has hung up.
std::shared_ptr<PageChannel> ChannelWith(const std::string& answers, int& agentEnd)
{
    auto channel = std::make_shared<PageChannel>();
    agentEnd = channel->TakeAgentEnd();
    send(agentEnd, answers.data(), answers.size(), MSG_DONTWAIT);
    shutdown(agentEnd, SHUT_WR);
    return channel;
}

}  // namespace

void Try(const std::string& input)
{
    auto pieces = PiecesOf(input, '\0');
    if (pieces.size() > kMostAnswers) pieces.resize(kMostAnswers);
    std::string answers;
    for (const std::string& piece : pieces) answers += AnswerOf(piece);
    static Program& program = *new Program;
    frmBrowser& browser = program.browser;
    for (const char* mode : {"READ", "WRITE"}) {
        int agentEnd = -1;
        const auto channel = ChannelWith(answers, agentEnd);
        PageFrame frame({channel, {1, 2}});
        browser.glngNoOfFormAction = 0;
        browser.CollectFormActions(frame, "http://h/", browser.glngNoOfFormAction, browser.gstrFormActionPage,
                                   browser.gstrFormAction);
        std::string action = "http://h/a.cgi";
        std::string postdata = "a=1&b=2&c=3&b=4";
        browser.ProcessDocument(frame, mode, action, postdata);
        Expect(PiecesOf(postdata, '&').size() == 4, "the page adds no field and takes none");
        Expect(action == "http://h/a.cgi", "the page does not change where the record goes");
        close(agentEnd);
    }
}

}  // namespace velmora::fuzz
