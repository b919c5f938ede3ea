// The channel to a page's process, with something hostile at its other end.
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <random>
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
    const std::string form = "0\n1\n7\nto.cgi\n0\n";
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
            const std::string& body = request.starts_with("document") ? first : then;
            Send(descriptor, {.bodyBytes = static_cast<std::uint32_t>(body.size()), .outcome = 0, .revision = 1}, body);
        });
    }
}

/// One answer of an agent that keeps to nothing: whole, twice, in pieces, huge, broken off, or none.
void AnswerAnyhow(std::mt19937& random, int descriptor, const std::string& request)
{
    std::string body = request.starts_with("document") ? "0\n2\n7\nto.cgi\n0\nf\n8\nto.cgi\n0\ng"
                       : request.starts_with("form")   ? "1\n3\na\nselect-one\nx\n0\n\n1\nX\nx\n0"
                                                       : "1";
    const auto kind = random() % 200;
    if (kind == 0) return;
    if (kind == 10) shutdown(descriptor, SHUT_WR);
    if (kind < 4) body = "200000" + std::string(wire::kLongestAnswer - 6, '\n');
    const wire::AnswerHeader header{.bodyBytes = static_cast<std::uint32_t>(body.size()) + (kind == 4 ? 9 : 0),
                                    .outcome = kind == 5,
                                    .revision = random() % 3};
    std::string message(reinterpret_cast<const char*>(&header), sizeof header);
    message += body;
    if (kind == 6) message += message;
    const std::size_t piece = kind == 9 ? 1 : message.size();
    for (std::size_t at = 0; at < message.size(); at += piece) {
        if (send(descriptor, message.data() + at, piece, MSG_NOSIGNAL) < 0) return;
    }
}

TEST(PageChannel, AnswersInAnyOrderAndSizeEndTheirDocumentAtWorst)
{
    constexpr int kRounds = 60;
    std::mt19937 random(1);
    int refused = 0;
    for (int round = 0; round < kRounds; ++round) {
        const auto begin = Clock::now();
        const auto time = std::make_shared<PageTime>();
        time->turn = std::chrono::milliseconds(9800);  // of ten seconds
        const auto channel = std::make_shared<PageChannel>(WaitFor, time);
        FakeAgent agent(*channel,
                        [&](int descriptor, const std::string& request) { AnswerAnyhow(random, descriptor, request); });
        try {
            const auto document = OpenDocument({channel, {1, 1}});
            for (int i = 0; i < 3; ++i) {
                const auto element = document->Forms(i % document->FormsLength())->Elements(0);
                element->SetValue(element->Value() + "y");
                element->Options(0)->Select();
                element->Click();
            }
        } catch (const DocumentError&) {
            ++refused;
        }
        EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5)) << round;
    }
    EXPECT_GT(refused, kRounds / 4);
    EXPECT_LT(refused, kRounds) << "some get through";
}

TEST(PageChannel, APageHasItsTimeForATurnAndUntilTheUserActs)
{
    const auto time = std::make_shared<PageTime>();
    PageChannel channel(WaitFor, time);
    int asked = 0;
    FakeAgent agent(channel, [&](int descriptor, const std::string&) {
        ++asked;
        Send(descriptor, {.bodyBytes = 0, .outcome = 1, .revision = 1}, "");
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

TEST(PageChannel, WritesThatGoTogetherEndWhereTheStructureChangesOrThePageRefuses)
{
    const auto channel = std::make_shared<PageChannel>();
    std::string tried;
    std::uint64_t revision = 1;
    FakeAgent agent(*channel, [&](int descriptor, const std::string& request) {
        std::uint32_t outcome = wire::kServed;
        // The first field goes when it has been written.
        const std::string first = revision == 1 ? "3\n1\na\ntext\n\n0\n\n0\n" : "2\n";
        std::string body = request.starts_with("document") ? "0\n1\n7\nto.cgi\n0\nf"
                                                           : first + "2\nb\ntext\n\n0\n\n0\n3\nc\ntext\n\n0\n\n0";
        if (request.find("value") != std::string::npos) {
            tried += request + "; ";
            // The first write changes the structure; the page refuses one of the third row.
            const int row = static_cast<int>(std::count(tried.begin(), tried.end(), ';'));
            if (row == 1) ++revision;
            if (row == 3) outcome = wire::kRefused;
            body = row == 3 ? "gone" : "1";
        }
        Send(descriptor, {static_cast<std::uint32_t>(body.size()), outcome, revision}, body);
    });
    const auto form = OpenDocument({channel, {1, 1}})->Forms(0);
    std::string asked;
    const auto write = [&](Element& element) {
        asked += element.Name();
        // The second is of use only once the first is written.
        if (asked != "ab") element.SetValue("x");
    };
    EXPECT_THROW(form->WriteEach(write), DocumentError);
    EXPECT_EQ(asked, "abcbc") << "all behind the change is asked for anew, and nothing behind a refusal";
    const std::string all = "1\n3\nvalue\n1\nx\n3\nvalue\n3\nx; ";
    EXPECT_EQ(tried, all + "2\n3\nvalue\n2\nx; 2\n3\nvalue\n3\nx; ");
    EXPECT_EQ(form->Elements(0)->Value(), "") << "the next answer is that to the next request";
}

TEST(PageChannel, AnEndThatHasFailedIsNotAskedAgain)
{
    PageChannel channel;
    int asked = 0;
    FakeAgent agent(channel, [&](int descriptor, const std::string&) {
        ++asked;
        Send(descriptor, {.bodyBytes = wire::kLongestAnswer + 1, .outcome = 0, .revision = 0}, "");
    });
    ExpectFailure(channel);
    ExpectFailure(channel);
    EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace velmora::test
