// The channel to a page's process, with something hostile at its other end.
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <thread>

#include "platform/document/PageDocument.h"

namespace velmora::test {
namespace {

/// The other end: answers each request as the test says, from a thread of its own.
class FakeAgent {
public:
    using Answer = std::function<void(int descriptor, const std::string& request)>;

    FakeAgent(PageChannel& channel, Answer answer)
        : descriptor_(channel.TakeAgentEnd()), thread_([this, answer] {
              wire::RequestHeader header{};
              while (recv(descriptor_, &header, sizeof header, MSG_WAITALL) == sizeof header) {
                  std::string body(header.bodyBytes, '\0');
                  if (!body.empty()) recv(descriptor_, body.data(), body.size(), MSG_WAITALL);
                  answer(descriptor_, body);
              }
          })
    {
    }
    ~FakeAgent()
    {
        shutdown(descriptor_, SHUT_RDWR);
        thread_.join();
        close(descriptor_);
    }

private:
    int descriptor_;
    std::thread thread_;
};

void Send(int descriptor, const wire::AnswerHeader& header, const std::string& body)
{
    send(descriptor, &header, sizeof header, MSG_NOSIGNAL);
    send(descriptor, body.data(), body.size(), MSG_NOSIGNAL);
}

void ExpectFailure(PageChannel& channel)
{
    EXPECT_THROW(channel.Read({1, 1}, {"document"}, [](wire::Reader&) { return 0; }), DocumentError);
}

/// What comes of reading a document whose agent answers so.
void ExpectRefused(const FakeAgent::Answer& answer)
{
    const auto channel = std::make_shared<PageChannel>();
    FakeAgent agent(*channel, answer);
    EXPECT_THROW(
        {
            const auto document = OpenDocument({channel, {1, 1}});
            for (int i = 0; i < document->FormsLength(); ++i) document->Forms(i)->Elements(0)->OptionsLength();
            throw std::logic_error("the answers were taken");
        },
        DocumentError);
}

TEST(PageChannel, AnswersThatMakeNoSenseAreFailures)
{
    const std::string form = "0\n1\n7\nto.cgi\n";
    // What comes for the document, and for its form.
    const std::pair<std::string, std::string> table[] = {
        {form, ""},
        {form, "x"},
        {form, "1"},
        {form, "99999999999999999999"},
        {form, "4294967295\n1\nname"},
        {form, "-1"},
        {form, "1\n1\nname\ntext\nvalue\n0\n\n18446744073709551615\na\nb\n0"},
        {form, "1\n1\n\\"},
        {"", ""},
        {"0", ""},
        {"0\n3\n1\na", ""},
        {"2000000000\n0", ""},
        {"0\n18446744073709551615", ""},
        {"0\n0\nmore", ""}};
    for (const auto& [document, elements] : table) {
        SCOPED_TRACE(document + " " + elements);
        ExpectRefused([&, &first = document, &then = elements](int descriptor, const std::string& request) {
            const std::string& body = request == "document" ? first : then;
            Send(descriptor, {.bodyBytes = static_cast<std::uint32_t>(body.size()), .failed = 0, .revision = 1}, body);
        });
    }
}

TEST(PageChannel, LengthsThatLieAndAnEndThatHangsUpAreFailures)
{
    ExpectRefused([](int descriptor, const std::string&) {
        Send(descriptor, {.bodyBytes = 0xffffffff, .failed = 0, .revision = 0}, "short");
    });
    ExpectRefused([](int descriptor, const std::string&) {
        Send(descriptor, {.bodyBytes = 1000, .failed = 0, .revision = 0}, "short");
        shutdown(descriptor, SHUT_RDWR);
    });
    ExpectRefused([](int descriptor, const std::string&) {
        send(descriptor, "abc", 3, MSG_NOSIGNAL);
        shutdown(descriptor, SHUT_RDWR);
    });
    ExpectRefused([](int descriptor, const std::string&) {
        Send(descriptor, {.bodyBytes = 4, .failed = 1, .revision = 0}, "no\xff!");
    });
}

TEST(PageChannel, APageHasItsTimeForATurnAndUntilTheUserActs)
{
    const auto time = std::make_shared<PageTime>();
    PageChannel channel(WaitFor, time);
    int asked = 0;
    FakeAgent agent(channel, [&](int descriptor, const std::string&) {
        ++asked;
        Send(descriptor, {.bodyBytes = 0, .failed = 1, .revision = 1}, "");
    });
    ExpectFailure(channel);
    EXPECT_GT(time->turn.count(), 0) << "a request that fails counts, too";
    time->turn = std::chrono::seconds(10);
    ExpectFailure(channel);
    EXPECT_EQ(asked, 1) << "the turn's time is used up";
    channel.BeginTurn();
    ExpectFailure(channel);
    EXPECT_EQ(asked, 2);
    time->sinceAct = std::chrono::seconds(20);
    ExpectFailure(channel);
    EXPECT_EQ(asked, 2) << "the user has done nothing for all that time";
}

TEST(PageChannel, AnEndThatHasFailedIsNotAskedAgain)
{
    PageChannel channel;
    int asked = 0;
    FakeAgent agent(channel, [&](int descriptor, const std::string&) {
        ++asked;
        Send(descriptor, {.bodyBytes = wire::kLongestAnswer + 1, .failed = 0, .revision = 0}, "");
    });
    ExpectFailure(channel);
    ExpectFailure(channel);
    EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace velmora::test
