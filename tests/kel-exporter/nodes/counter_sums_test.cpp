// Counters of 32 bits over several looks.
#include "kel-exporter/nodes/counter_sums.h"

#include "notation/json.h"

#include <gtest/gtest.h>

namespace kel_exporter
{
namespace
{

using notation::document;

constexpr uint64_t full = 0xFFFFFFFF;

document queue_at(uint64_t frames, uint64_t octets, uint64_t made = 1)
{
    return {{"port", 6},
            {"made", made},
            {"counters", {{"pkts_tx", frames}, {"octets_tx", octets}, {"pkts_out_standing", 100 - frames % 100}}}};
}

class CounterSums : public testing::Test
{
protected:
    // What becomes of the state with this queue and this PCEP.
    document carried_on(const document &queue, const document &pcep = document::object(), uint64_t since = 1)
    {
        document state = {{"since", since}, {"queues", document::array({queue})}, {"pceps", document::array()}};
        if (!pcep.empty())
            state["pceps"].push_back(pcep);
        sums.carry_on(state);
        return state;
    }

    // The queue's frames then.
    uint64_t frames(const document &queue, uint64_t since = 1)
    {
        return carried_on(queue, document::object(), since)
            .at("queues")[0]
            .at("counters")
            .at("pkts_tx")
            .number<uint64_t>();
    }

    counter_sums sums;
};

TEST_F(CounterSums, BeginWithTheCounter)
{
    EXPECT_EQ(frames(queue_at(full, 5)), full);
}

TEST_F(CounterSums, GoOnWhereACounterWrapsAround)
{
    EXPECT_EQ(frames(queue_at(full - 1, 100)), full - 1);
    EXPECT_EQ(frames(queue_at(3, 200)), full + 4);
    EXPECT_EQ(frames(queue_at(3, 200)), full + 4);
    EXPECT_EQ(frames(queue_at(full, 300)), 2 * full + 1);
    EXPECT_EQ(frames(queue_at(0, 400)), 2 * full + 2);
}

TEST_F(CounterSums, WholeCountersAndLevelsStayAsTheyAre)
{
    carried_on(queue_at(50, uint64_t{1} << 40));
    const document counters = carried_on(queue_at(75, (uint64_t{1} << 40) + 1)).at("queues")[0].at("counters");
    EXPECT_EQ(counters.at("octets_tx").number<uint64_t>(), (uint64_t{1} << 40) + 1);
    EXPECT_EQ(counters.at("pkts_out_standing"), 25);
}

TEST_F(CounterSums, BeginAnewWithAnObjectThatWasMadeAnew)
{
    frames(queue_at(full, 100));
    EXPECT_EQ(frames(queue_at(7, 200, 2)), 7u);
}

// As on a platform that uses a handle again.
TEST_F(CounterSums, BeginAnewWhereAWholeCounterHasShrunk)
{
    frames(queue_at(full, 100));
    EXPECT_EQ(frames(queue_at(7, 99)), 7u);
}

TEST_F(CounterSums, BeginAnewWithAnotherProcess)
{
    frames(queue_at(full, 100), 1);
    EXPECT_EQ(frames(queue_at(7, 200), 2), 7u);
}

TEST_F(CounterSums, GoOnAfterALookThatDidNotReadThem)
{
    frames(queue_at(full, 100));
    document unread = queue_at(0, 0);
    unread["counters"] = nullptr;
    EXPECT_TRUE(carried_on(unread).at("queues")[0].at("counters").is_null());
    EXPECT_EQ(frames(queue_at(0, 200)), full + 1);
}

// A node of another version may answer otherwise from one look to the next.
TEST_F(CounterSums, LeaveWhatOneOfTwoLooksDoesNotCount)
{
    const auto with = [](uint64_t frames, document more) {
        document queue = queue_at(frames, 100);
        for (auto &[name, value] : more.members())
            queue["counters"][name] = std::move(value);
        return queue;
    };
    frames(with(full, {{"read", nullptr}, {"unread", 5}, {"block", 5}, {"flat", {{"frames", 5}}}}));
    const document more = {{"read", 3}, {"unread", nullptr}, {"block", {{"frames", 7}}},
                           {"flat", 7}, {"new", 9},          {"new block", {{"frames", 9}}}};
    const document counters = carried_on(with(2, more)).at("queues")[0].at("counters");
    EXPECT_EQ(counters.at("pkts_tx").number<uint64_t>(), full + 3);
    for (const auto &[name, value] : more.members())
        EXPECT_EQ(counters.at(name), value) << name;
}

TEST_F(CounterSums, KnowTheWordsOfPcepsWithinTheirBlocks)
{
    const auto pcep = [](uint64_t dropped) {
        return document{
            {"id", 6}, {"made", 1}, {"counters", {{"inbound", {{"frames_dropped", dropped}, {"octets", 1}}}}}};
    };
    carried_on(queue_at(0, 0), pcep(full));
    EXPECT_EQ(carried_on(queue_at(0, 0), pcep(1))
                  .at("pceps")[0]
                  .at("counters")
                  .at("inbound")
                  .at("frames_dropped")
                  .number<uint64_t>(),
              full + 2);
}

} // namespace
} // namespace kel_exporter
