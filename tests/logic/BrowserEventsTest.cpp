// The events of pages whose agents tell anything, in any order and size, for as long as they like.
#include "platform/document/BrowserEvents.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <random>

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace velmora::test {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

std::size_t HeldBytes()
{
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

class BrowserEventsOfHostilePages : public testing::Test {
protected:
    BrowserEventsOfHostilePages()
    {
        const auto handle = [this](BrowserObject& page, const std::string&) {
            EXPECT_FALSE(std::exchange(isHandling_, true)) << "one at a time";
            ++handled_;
            if (random_() % 4 == 0) TellAnything(100);
            EXPECT_THROW(page.Document(), DocumentError);
            isHandling_ = false;
        };
        control_.BeforeNavigate2.Add([handle](BeforeNavigate2Event& event) { handle(event.pDisp, event.URL); });
        control_.DocumentComplete.Add(handle);
        control_.DocumentResumed.Add(handle);
    }

    /// What `tell` makes the program keep while a question to the user holds everything up.
    std::size_t KeptOf(int times, const std::function<void(std::uint64_t)>& tell)
    {
        const std::size_t before = HeldBytes();
        std::size_t kept = 0;
        turns_.TakeAtOnce([&] {
            const int handledBefore = handled_;
            for (int i = 0; i < times; ++i) tell(static_cast<std::uint64_t>(i));
            EXPECT_EQ(handled_, handledBefore) << "nothing comes out while another is handled";
            kept = HeldBytes() - before;
        });
        RunLoop();
        return kept;
    }

    void RunLoop()
    {
        while (!loop_.empty()) {
            const Turns::Action next = std::exchange(loop_.front(), {});
            loop_.pop_front();
            next();
        }
    }

    void Announce(PageAction action)
    {
        ++announced_;
        events_.Announce({.url = action.url, .headers = {}, .cause = std::move(action), .from = {}},
                         [this](bool) { ++decided_; });
    }

    void TellAnything(std::size_t longest)
    {
        const auto text = [&] { return std::string(random_() % longest, 'x'); };
        const PagePlace place{nullptr, {random_() % 5, random_() % 5}};
        PageAction action;
        action.isForm = random_() % 2 == 0;
        action.isNews = random_() % 2 == 0;
        action.place = place;
        action.userActs = random_() % 9;
        for (std::string PageAction::*each : {&PageAction::url, &PageAction::method, &PageAction::target,
                                              &PageAction::body, &PageAction::form, &PageAction::documentUrl})
            action.*each = text();
        switch (random_() % 8) {
        case 0: events_.OnBegun(place, text(), random_() % 9 == 0); return;
        case 1: events_.OnFinished(place, text(), false, {}); return;
        case 2: events_.OnFinished(place, text(), true, std::vector<std::string>(random_() % 9, text())); return;
        case 3: events_.OnSubmitted({action, random_(), {{}, std::vector<ElementFacts>(random_() % 99)}}); return;
        case 4: Announce(std::move(action)); return;
        case 5: events_.Rest(); return;
        case 6: events_.AllowsWindow(); return;
        default: events_.NoteUserAct();
        }
    }

    std::mt19937 random_{1};
    std::deque<Turns::Action> loop_;
    Turns turns_{[this](Turns::Action action) { loop_.push_back(std::move(action)); }};
    Window window_;
    WebBrowser control_{window_, "page"};
    BrowserEvents events_{control_, turns_, std::make_shared<PageTime>(), [this](const std::string& url, bool) {
                              return random_() % 9 ? std::optional(url) : std::nullopt;
                          }};
    bool isHandling_ = false;
    int handled_ = 0;
    int announced_ = 0;
    int decided_ = 0;
};

TEST_F(BrowserEventsOfHostilePages, ComeOneByOneAndEachNavigationIsDecidedOnce)
{
    for (int round = 0; round < 50; ++round) {
        KeptOf(200, [this](std::uint64_t) { TellAnything(1000); });
        EXPECT_EQ(decided_, announced_);
    }
    EXPECT_GT(handled_, 1000);
}

TEST_F(BrowserEventsOfHostilePages, KeepNoMoreThanTheirShare)
{
    const auto place = [](std::uint64_t number) { return PagePlace{nullptr, {number, number}}; };
    const std::string large(kMegabyte, 'x');
    PageAction action;
    action.form = large;
    const std::size_t before = HeldBytes();
    EXPECT_LT(KeptOf(20'000, [&](std::uint64_t i) { events_.OnBegun(place(i), "u", false); }), kMegabyte / 4);
    EXPECT_LT(KeptOf(20'000, [&](std::uint64_t) { events_.OnFinished(place(1), "u", false, {}); }), kMegabyte / 4);
    const std::size_t most = 33 * kMegabyte;
    EXPECT_LT(KeptOf(50, [&](std::uint64_t i) { events_.OnFinished(place(i), large, false, {}); }), most);
    EXPECT_LT(KeptOf(50, [&](std::uint64_t) { events_.OnFinished(place(1), "u", false, {large}); }), most);
    EXPECT_LT(KeptOf(50, [&](std::uint64_t) { Announce(action); }), most);
    EXPECT_LT(HeldBytes() - before, 2 * kMegabyte) << "of documents that have finished";
    EXPECT_EQ(decided_, announced_);
}

TEST_F(BrowserEventsOfHostilePages, AskAboutThreeWindowsUntilTheUserActsAgain)
{
    int asked = 0;
    control_.NewWindow2.Add([&](bool& cancel) { asked += std::exchange(cancel, true) ? 0 : 1; });
    for (int i = 0; i < 50; ++i) EXPECT_FALSE(events_.AllowsWindow());
    EXPECT_EQ(asked, 3);
    events_.NoteUserAct();
    EXPECT_FALSE(events_.AllowsWindow());
    EXPECT_EQ(asked, 4);
}

}  // namespace
}  // namespace velmora::test
