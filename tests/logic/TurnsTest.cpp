#include "platform/Turns.h"

#include <gtest/gtest.h>

#include <string>

namespace velmora::test {

TEST(Turns, OneAtATimeInTheirOrder)
{
    std::deque<Turns::Action> loop;
    Turns turns([&](Turns::Action action) { loop.push_back(std::move(action)); });
    std::string log;
    const auto note = [&](char c) { return [&log, c] { log += c; }; };
    turns.Post(note('a'));
    EXPECT_EQ(log, "") << "the main loop has not come to it";
    turns.Take([&] {
        log += 'b';
        turns.Take(note('d'));
        turns.Post(note('e'));
        EXPECT_FALSE(turns.TakeAtOnce(note('x')));
        loop.front()();
        log += 'c';
    });
    EXPECT_EQ(log, "abcde");
    EXPECT_TRUE(turns.TakeAtOnce([&] { turns.Post(note('g')); }));
    turns.End();
    turns.Take(note('x'));
    for (const auto& action : loop) action();
    EXPECT_EQ(log, "abcde") << "nothing runs after the end";
}

}  // namespace velmora::test
