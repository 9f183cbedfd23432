/*
 * forwarding_test.cpp - frames from end to end, and who counts them.
 */
#include "softnode/node/node.h"

#include "traffic.h"

#include "softnode/common/facts.h"
#include "softnode/views/snapshot.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <optional>
#include <vector>

namespace facts = softnode::facts;
using softnode::Counters;
using softnode::Drop;
using softnode::Fate;
using softnode::Handle;
using softnode::Mac;
using softnode::Refusal;

namespace
{

constexpr std::uint64_t countless = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t second = 1'000'000'000;

const Mac there = numbered_mac(1);
const Mac elsewhere = numbered_mac(2);
const Mac here = numbered_mac(3);

struct Frames {
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
    std::uint64_t dropped = 0;

    bool operator==(const Frames &) const = default;
};

void PrintTo(const Frames &frames, std::ostream *stream)
{
    *stream << "received " << frames.received << ", sent " << frames.sent << ", dropped " << frames.dropped;
}

Frames frames(const Counters &counters)
{
    return {counters[Fate::received].frames, counters[Fate::sent].frames, counters[Fate::dropped].frames};
}

/* What the watcher heard; the reason is that of a frame that was dropped. */
struct Report {
    std::uint64_t identity;
    Fate fate;
    std::optional<Drop> reason;
    Handle queue;
    softnode::Instant entered;
    softnode::Instant left;

    bool operator==(const Report &) const = default;
};

class NodeTraffic : public testing::Test
{
protected:
    Frames service() const
    {
        return frames(node.ebcom.counters());
    }

    /* The service has sent, dropped or still holds what it received. */
    void TearDown() override
    {
        const Counters &counters = node.ebcom.counters();
        const auto waiting = node.waiting();
        EXPECT_EQ(counters[Fate::received].frames,
                  counters[Fate::sent].frames + counters[Fate::dropped].frames + waiting.frames);
        EXPECT_EQ(counters[Fate::received].octets,
                  counters[Fate::sent].octets + counters[Fate::dropped].octets + waiting.octets);
    }

    void watch()
    {
        node.watcher = [this](const softnode::FrameReport &told) {
            heard.push_back({told.identity, told.fate,
                             told.fate == Fate::dropped ? std::optional(told.reason) : std::nullopt, told.queue,
                             told.entered, told.left});
        };
    }

    LoadedNode node;
    std::vector<Report> heard;
};

} // namespace

TEST_F(NodeTraffic, TheExampleOfTheDocumentation)
{
    const Handle queue = node.add_queue(node.add_scheduler(), {100'000, 65'536, 1'048'576});
    node.lay_path(there, queue);
    node.add_pcep(17, here, there);

    struct Row {
        std::uint64_t time;
        std::uint64_t sent;
        std::uint64_t waiting;
        std::uint64_t blocks;
    };
    constexpr std::array<Row, 7> rows{{{0, 1, 682, 4092},
                                       {53'504, 45, 638, 3828},
                                       {157'119, 45, 638, 3828},
                                       {157'120, 46, 637, 3822},
                                       {1'000'000, 53, 630, 3780},
                                       {76'597'119, 682, 1, 6},
                                       {76'597'120, 683, 0, 0}}};
    ASSERT_EQ(node.offer(there, {1000, 1500}), Refusal::granted);
    for (const Row &row : rows) {
        node.advance(row.time - node.clock.now());
        EXPECT_EQ(frames(node.queue(queue).counters), (Frames{1000, row.sent, 317})) << row.time;
        EXPECT_EQ(node.queue(queue).waiting().frames, row.waiting) << row.time;
        EXPECT_EQ(node.queue(queue).waiting().octets, row.waiting * 1500) << row.time;
        EXPECT_EQ(node.queue(queue).waiting().blocks, row.blocks) << row.time;
        EXPECT_EQ(service(), (Frames{1000, row.sent, 317})) << row.time;
        EXPECT_EQ(frames(node.pcep(17)), (Frames{0, 1000, 0})) << row.time;
    }
}

TEST_F(NodeTraffic, FramesForAPathGoThroughItsQueue)
{
    const Handle queue = node.add_queue(node.add_scheduler());
    const Handle idle = node.add_queue(node.add_scheduler());
    node.lay_path(there, queue);
    node.lay_path(elsewhere, idle);
    ASSERT_EQ(node.offer(there, {3, 1230}), Refusal::granted);
    EXPECT_EQ(service(), (Frames{3, 1, 0}));
    node.advance(1999);
    EXPECT_EQ(service(), (Frames{3, 2, 0}));
    node.advance(1);
    EXPECT_EQ(service(), (Frames{3, 3, 0}));
    EXPECT_EQ(frames(node.queue(queue).counters), (Frames{3, 3, 0}));
    EXPECT_EQ(node.queue(queue).counters[Fate::sent].octets, 3690U);
    EXPECT_EQ(frames(node.queue(idle).counters), Frames{});
}

TEST_F(NodeTraffic, AFrameArrivesWithItsLastBit)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(9, there, here);
    node.add_pcep(4, there, here);
    ASSERT_EQ(node.offer(there, {3, 1230}), Refusal::granted);
    EXPECT_EQ(service(), (Frames{3, 1, 0})) << "sent with its first bit";
    EXPECT_EQ(frames(node.pcep(4)), Frames{});
    EXPECT_TRUE(node.on_the_line);
    node.advance(990);
    EXPECT_EQ(frames(node.pcep(4)), Frames{});
    node.advance(1);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{1, 0, 0})) << "the one with the lowest id";
    EXPECT_FALSE(node.on_the_line) << "990.4: the gap keeps the line busy up to 1000";
    node.advance(9 + 1000);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{2, 0, 0}));
    node.advance(1000);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{3, 0, 0}));
    EXPECT_EQ(node.pcep(4)[Fate::received].octets, 3690U);
    EXPECT_EQ(frames(node.pcep(9)), Frames{});
}

TEST_F(NodeTraffic, AFrameArrivesAtWhoIsThereThen)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    const Handle deleted = node.add_pcep(4, there, here);
    ASSERT_EQ(node.offer(there, {3, 1230}), Refusal::granted);
    ASSERT_EQ(node.pceps.delete_pcep(deleted), Refusal::granted);
    node.advance(1000);
    node.add_pcep(4, there, here);
    node.advance(1000);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{1, 0, 0}));
    EXPECT_EQ(service(), (Frames{3, 3, 0}));
}

TEST_F(NodeTraffic, OfferedFramesAreSentByThePcepWithThatRemoteAddress)
{
    node.lay_path(there, node.add_queue(node.add_scheduler(), {0, 0, 256}));
    node.add_pcep(9, here, there);
    node.add_pcep(4, here, there);
    ASSERT_EQ(node.offer(there, {5, 200}), Refusal::granted);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{0, 5, 0})) << "also those that the queue drops";
    EXPECT_EQ(frames(node.pcep(9)), Frames{});
    EXPECT_EQ(service(), (Frames{5, 1, 3}));
}

TEST_F(NodeTraffic, FramesForALocalPcepWithoutAPathArriveAtOnce)
{
    node.add_pcep(4, here, there);
    ASSERT_EQ(node.offer(here, {countless, 64}), Refusal::granted);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{countless, 0, 0}));
    EXPECT_EQ(service(), (Frames{countless, countless, 0}));
}

TEST_F(NodeTraffic, FramesForNobodyAreRefused)
{
    node.add_pcep(4, here, there);
    EXPECT_EQ(node.offer(elsewhere, {1, 64}), Refusal::gone);
    EXPECT_EQ(node.offer(there, {1, 64}), Refusal::gone) << "a remote address alone leads nowhere";
    EXPECT_EQ(service(), Frames{});
    EXPECT_EQ(frames(node.pcep(4)), Frames{});
}

TEST_F(NodeTraffic, FramesHaveAPossibleLength)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(4, here, there);
    for (const std::uint32_t length : {0U, 65'536U, 0xffff'ffffU}) {
        EXPECT_EQ(node.offer(there, {1, length}), Refusal::invalid);
        EXPECT_EQ(node.send(4, {1, length}), Refusal::invalid);
    }
    EXPECT_EQ(service(), Frames{});
    EXPECT_EQ(node.offer(there, {1, 1}), Refusal::granted);
    EXPECT_EQ(node.send(4, {1, 65'535}), Refusal::granted);
}

TEST_F(NodeTraffic, TheMtuBoundsAFrameOnceParametersWereSet)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(4, here, there);
    ASSERT_EQ(node.offer(there, {1, 65'535}), Refusal::granted);
    ASSERT_EQ(node.ebcom.set_globals({1500, 0x88b5, 0, 0}), Refusal::granted);
    ASSERT_EQ(node.offer(there, {2, 1522}), Refusal::granted);
    EXPECT_EQ(node.ebcom.dropped(Drop::too_long).frames, 0U) << "header, VLAN tag and check sequence beside the MTU";
    ASSERT_EQ(node.offer(there, {2, 1523}), Refusal::granted);
    ASSERT_EQ(node.offer(here, {3, 1523}), Refusal::granted) << "also to a PCEP without a path";
    EXPECT_EQ(node.ebcom.dropped(Drop::too_long).frames, 5U);
    EXPECT_EQ(node.ebcom.dropped(Drop::too_long).octets, 5U * 1523);
    EXPECT_EQ(service(), (Frames{8, 1, 5}));
    EXPECT_EQ(frames(node.pcep(4)), (Frames{0, 5, 0}));
}

TEST_F(NodeTraffic, WhatIsDroppedIsCountedByItsReason)
{
    const Handle queue = node.add_queue(node.add_scheduler(), {0, 0, 512});
    node.lay_path(there, queue);
    node.lay_path(elsewhere, node.add_queue(node.add_scheduler()));
    node.add_pcep(4, here, numbered_mac(9));
    ASSERT_EQ(node.offer(there, {6, 100}), Refusal::granted);
    ASSERT_EQ(node.send(4, {2, 64}), Refusal::granted);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    ASSERT_EQ(node.offer(there, {7, 300}), Refusal::granted);
    EXPECT_EQ(node.ebcom.dropped(Drop::no_room).frames, 3U);
    EXPECT_EQ(node.ebcom.dropped(Drop::no_way).octets, 128U);
    EXPECT_EQ(node.ebcom.dropped(Drop::no_queue).frames, 9U) << "two waited in the queue";
    EXPECT_EQ(node.ebcom.dropped(Drop::no_queue).octets, 2300U);
    EXPECT_EQ(service(), (Frames{15, 1, 14}));
}

TEST_F(NodeTraffic, NoFramesAreNothing)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(4, here, there);
    node.add_group(100, {4});
    const std::string before = snapshot(node, {});
    EXPECT_EQ(node.offer(there, {0, 64}), Refusal::granted);
    EXPECT_EQ(node.send(4, {0, 64}), Refusal::granted);
    EXPECT_EQ(node.send(100, {0, 64}), Refusal::granted);
    EXPECT_EQ(snapshot(node, {}), before);
}

TEST_F(NodeTraffic, APathWithoutQueueDropsWhatItIsOffered)
{
    const Handle queue = node.add_queue(node.add_scheduler());
    node.lay_path(there, queue);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    EXPECT_EQ(node.offer(there, {3, 64}), Refusal::granted);
    EXPECT_EQ(service(), (Frames{3, 0, 3}));
}

TEST_F(NodeTraffic, WhatWaitsInARemovedQueueIsDropped)
{
    const Handle queue = node.add_queue(node.add_scheduler());
    node.lay_path(there, queue);
    ASSERT_EQ(node.offer(there, {3, 1230}), Refusal::granted);
    ASSERT_EQ(node.offer(there, {1, 100}), Refusal::granted);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    EXPECT_EQ(service(), (Frames{4, 1, 3}));
    EXPECT_EQ(node.ebcom.counters()[Fate::dropped].octets, 2560U);
    node.advance(second);
    EXPECT_EQ(service(), (Frames{4, 1, 3}));
}

TEST_F(NodeTraffic, WhatWaitsLeavesThroughTheQueueThatItEntered)
{
    const Handle old = node.add_queue(node.add_scheduler());
    const Handle fresh = node.add_queue(node.add_scheduler());
    node.lay_path(there, old);
    ASSERT_EQ(node.offer(there, {3, 1230}), Refusal::granted);
    node.lay_path(there, fresh);
    ASSERT_EQ(node.offer(there, {2, 1230}), Refusal::granted);
    node.advance(second);
    EXPECT_EQ(frames(node.queue(old).counters), (Frames{3, 3, 0}));
    EXPECT_EQ(frames(node.queue(fresh).counters), (Frames{2, 2, 0}));
}

TEST_F(NodeTraffic, WhatWaitsOutlivesItsPath)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    ASSERT_EQ(node.offer(there, {3, 1230}), Refusal::granted);
    ASSERT_EQ(node.ebcom.delete_path(there), Refusal::granted);
    node.advance(second);
    EXPECT_EQ(service(), (Frames{3, 3, 0}));
}

TEST_F(NodeTraffic, APcepSendsToItsRemoteAddress)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(4, here, there);
    node.add_pcep(9, there, here);
    ASSERT_EQ(node.send(9, {2, 1230}), Refusal::granted);
    EXPECT_EQ(frames(node.pcep(9)), (Frames{0, 2, 0}));
    EXPECT_EQ(frames(node.pcep(4)), (Frames{2, 0, 0}));
    ASSERT_EQ(node.send(4, {2, 1230}), Refusal::granted);
    node.advance(2000);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{2, 2, 0}));
    EXPECT_EQ(frames(node.pcep(9)), (Frames{2, 2, 0}));
}

TEST_F(NodeTraffic, ThePcepThatSendsCountsHoweverManyHaveItsRemoteAddress)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(4, here, there);
    node.add_pcep(9, here, there);
    ASSERT_EQ(node.send(9, {2, 1230}), Refusal::granted);
    EXPECT_EQ(frames(node.pcep(9)), (Frames{0, 2, 0}));
    EXPECT_EQ(frames(node.pcep(4)), Frames{});
}

TEST_F(NodeTraffic, WhatAPcepSendsNowhereIsDropped)
{
    node.add_pcep(4, here, there);
    ASSERT_EQ(node.send(4, {2, 1230}), Refusal::granted);
    EXPECT_EQ(frames(node.pcep(4)), (Frames{0, 2, 0}));
    EXPECT_EQ(service(), (Frames{2, 0, 2}));
}

TEST_F(NodeTraffic, OnlyPcepsAndGroupsSend)
{
    EXPECT_EQ(node.send(4, {1, 64}), Refusal::gone);
    EXPECT_EQ(node.send(0, {1, 64}), Refusal::invalid);
    EXPECT_EQ(node.send(512, {1, 64}), Refusal::invalid);
    EXPECT_EQ(service(), Frames{});
}

TEST_F(NodeTraffic, AGroupReplicatesToTheRemoteAddressOfEveryMember)
{
    const Handle queue = node.add_queue(node.add_scheduler());
    node.lay_path(there, queue);
    node.lay_path(elsewhere, node.add_queue(node.add_scheduler()));
    node.add_pcep(1, here, there);
    node.add_pcep(2, here, elsewhere);
    node.add_pcep(3, there, here);
    node.add_group(100, {2, 1, 3});
    ASSERT_EQ(node.send(100, {4, 1230}), Refusal::granted);
    node.advance(second);

    EXPECT_EQ(node.group(100).offered.frames, 4U);
    EXPECT_EQ(node.group(100).copies.frames, 12U);
    EXPECT_EQ(node.group(100).dropped.frames, 0U);
    EXPECT_EQ(service(), (Frames{12, 12, 0}));
    EXPECT_EQ(frames(node.queue(queue).counters), (Frames{4, 4, 0}));
    EXPECT_EQ(frames(node.pcep(1)), (Frames{4, 4, 0})) << "what 3 sends arrives here";
    EXPECT_EQ(frames(node.pcep(2)), (Frames{0, 4, 0}));
    EXPECT_EQ(frames(node.pcep(3)), (Frames{4, 4, 0})) << "what 1 sends arrives there";
}

TEST_F(NodeTraffic, CopiesThatNothingLeadsToAreDroppedByTheGroup)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    node.add_pcep(1, here, there);
    const Handle deleted = node.add_pcep(2, here, there);
    node.add_pcep(3, here, elsewhere);
    node.add_group(100, {1, 2, 3});
    ASSERT_EQ(node.pceps.delete_pcep(deleted), Refusal::granted);
    ASSERT_EQ(node.send(100, {5, 100}), Refusal::granted);
    EXPECT_EQ(node.group(100).copies.frames, 15U);
    EXPECT_EQ(node.group(100).dropped.frames, 10U);
    EXPECT_EQ(node.group(100).dropped.octets, 1000U);
    EXPECT_EQ(service(), (Frames{15, 1, 10}));
}

TEST_F(NodeTraffic, CopiesThatAQueueDropsAreNotTheGroupsAffair)
{
    node.lay_path(there, node.add_queue(node.add_scheduler(), {0, 0, 0}));
    node.add_pcep(1, here, there);
    node.add_group(100, {1});
    ASSERT_EQ(node.send(100, {5, 100}), Refusal::granted);
    EXPECT_EQ(node.group(100).dropped.frames, 0U);
    EXPECT_EQ(service(), (Frames{5, 1, 4}));
}

TEST_F(NodeTraffic, AGroupWithoutMembersMakesNoCopies)
{
    node.add_group(100, {});
    ASSERT_EQ(node.send(100, {5, 100}), Refusal::granted);
    EXPECT_EQ(node.group(100).offered.frames, 5U);
    EXPECT_EQ(node.group(100).copies.frames, 0U);
    EXPECT_EQ(service(), Frames{});
}

TEST_F(NodeTraffic, MembersBehindOneQueueShareItsRoomFrameByFrame)
{
    const Handle queue = node.add_queue(node.add_scheduler(), {0, 0, 10 * 256});
    node.lay_path(there, queue);
    node.lay_path(elsewhere, queue);
    node.add_pcep(1, here, there);
    node.add_pcep(2, here, elsewhere);
    node.add_pcep(3, there, here);
    node.add_pcep(4, elsewhere, here);
    node.add_group(100, {1, 2});
    ASSERT_EQ(node.send(100, {1000, 100}), Refusal::granted);
    node.advance(second);
    EXPECT_EQ(frames(node.pcep(3)), (Frames{6, 0, 0}));
    EXPECT_EQ(frames(node.pcep(4)), (Frames{5, 0, 0}));
    EXPECT_EQ(service(), (Frames{2000, 11, 1989}));
}

TEST_F(NodeTraffic, ManyFramesAtOnceAreTheSameAsOneByOne)
{
    const auto loaded = [](std::uint64_t calls, std::uint64_t each) {
        LoadedNode loaded_node;
        const Handle shared = loaded_node.add_scheduler();
        for (const std::uint32_t id : {1U, 2U, 3U}) {
            loaded_node.lay_path(numbered_mac(id), loaded_node.add_queue(shared, {id * 1'000'000, id * 5, 20 * 256}));
            loaded_node.add_pcep(id, here, numbered_mac(id));
        }
        loaded_node.add_group(100, {3, 1, 2});
        loaded_node.advance(3);
        for (std::uint64_t call = 0; call < calls; ++call)
            EXPECT_EQ(loaded_node.send(100, {each, 1}), Refusal::granted);
        const std::string at_once = snapshot(loaded_node, {});
        loaded_node.advance(50);
        return at_once + snapshot(loaded_node, {});
    };
    EXPECT_EQ(loaded(1, 60), loaded(60, 1)) << "frames of an octet: more than one leaves in a nanosecond";
}

TEST_F(NodeTraffic, MoreFramesThanEverWereAreOneStep)
{
    const Handle queue = node.add_queue(node.add_scheduler(), {1000, 1500, 25'600});
    node.lay_path(there, queue);
    ASSERT_EQ(node.offer(there, {countless, 1500}), Refusal::granted);
    EXPECT_EQ(frames(node.queue(queue).counters), (Frames{countless, 1, countless - 17}));
    node.add_pcep(4, here, there);
    node.add_group(100, {4});
    ASSERT_EQ(node.send(100, {countless, 65'535}), Refusal::granted);
    EXPECT_EQ(node.queue(queue).waiting().frames, 16U);
}

TEST_F(NodeTraffic, TheWatcherHearsOfFramesThatHaveAnIdentity)
{
    const Handle queue = node.add_queue(node.add_scheduler());
    node.lay_path(there, queue);
    node.add_pcep(4, here, numbered_mac(9));
    watch();
    node.advance(5);
    for (const std::uint64_t identity : {7U, 0U, 8U, 1U})
        ASSERT_EQ(node.offer(there, {1, 100, identity}), Refusal::granted);
    ASSERT_EQ(node.offer(here, {1, 64, 9}), Refusal::granted);
    node.advance(second);
    EXPECT_EQ(heard, (std::vector<Report>{{7, Fate::sent, {}, queue, 5, 5},
                                          {9, Fate::sent, {}, Handle::null, 5, 5},
                                          {8, Fate::sent, {}, queue, 5, 197},
                                          {1, Fate::sent, {}, queue, 5, 293}}));
    node.watcher = nullptr;
    EXPECT_EQ(node.offer(there, {1, 100, 7}), Refusal::granted);
}

TEST_F(NodeTraffic, TheWatcherHearsWhyAFrameIsDropped)
{
    const Handle queue = node.add_queue(node.add_scheduler(), {0, 0, 256});
    node.lay_path(there, queue);
    node.add_pcep(4, here, numbered_mac(9));
    ASSERT_EQ(node.ebcom.set_globals({1500, 0x88b5, 0, 0}), Refusal::granted);
    watch();
    node.advance(5);
    ASSERT_EQ(node.send(4, {1, 64, 1}), Refusal::granted);
    ASSERT_EQ(node.offer(there, {1, 1523, 2}), Refusal::granted);
    for (const std::uint64_t identity : {0U, 3U, 4U})
        ASSERT_EQ(node.offer(there, {1, 200, identity}), Refusal::granted);
    node.advance(2);
    ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    ASSERT_EQ(node.offer(there, {2, 200, 5}), Refusal::granted);
    EXPECT_EQ(heard, (std::vector<Report>{{1, Fate::dropped, Drop::no_way, Handle::null, 5, 5},
                                          {2, Fate::dropped, Drop::too_long, queue, 5, 5},
                                          {4, Fate::dropped, Drop::no_room, queue, 5, 5},
                                          {3, Fate::dropped, Drop::no_queue, queue, 5, 7},
                                          {5, Fate::dropped, Drop::no_queue, queue, 7, 7},
                                          {5, Fate::dropped, Drop::no_queue, queue, 7, 7}}));
    node.reset();
    EXPECT_FALSE(node.watcher);
}

TEST_F(NodeTraffic, AnIdleYearIsOneStep)
{
    node.lay_path(there, node.add_queue(node.add_scheduler(), {1, 1500}));
    for (std::uint64_t year = 0; year < 500; ++year)
        node.advance(365 * 24 * 3600 * second);
    ASSERT_EQ(node.offer(there, {2, 1500}), Refusal::granted);
    EXPECT_EQ(service(), (Frames{2, 1, 0}));
}

TEST_F(NodeTraffic, TimeEnds)
{
    node.lay_path(there, node.add_queue(node.add_scheduler(1)));
    node.advance(countless - 1);
    node.advance(countless);
    EXPECT_EQ(node.clock.now(), countless);
    ASSERT_EQ(node.offer(there, {2, 1500}), Refusal::granted);
    node.advance(countless);
    EXPECT_EQ(service(), (Frames{2, 1, 0}));
}

TEST_F(NodeTraffic, AResetIsANodeJustSwitchedOn)
{
    node.lay_path(there, node.add_queue(node.add_scheduler()));
    ASSERT_EQ(node.offer(there, {2, 1500}), Refusal::granted);
    node.advance(5);
    node.reset();
    node.add_pcep(4, there, here);
    EXPECT_EQ(node.clock.now(), 0U);
    EXPECT_EQ(service(), Frames{});
    node.advance(second);
    EXPECT_EQ(service(), Frames{});
    EXPECT_EQ(frames(node.pcep(4)), Frames{}) << "what was on the line does not arrive";
}

TEST_F(NodeTraffic, AFullNodeIsLoadedAndTakenDownAgain)
{
    constexpr std::uint32_t paths = 10'000;
    std::vector<Handle> queues;
    for (std::size_t index = 0; index < facts::most_queues; ++index)
        queues.push_back(node.add_queue(node.add_scheduler()));
    for (std::uint32_t number = 0; number < paths; ++number)
        node.lay_path(numbered_mac(number), queues[number % queues.size()]);
    for (std::uint32_t id = 1; id <= facts::highest_pcep_id; ++id)
        node.add_pcep(id, numbered_mac(id - 1), numbered_mac(paths - id));

    for (std::uint32_t number = 0; number < paths; ++number)
        ASSERT_EQ(node.offer(numbered_mac(number), {2, 1230}), Refusal::granted);
    for (std::uint32_t id = 1; id <= facts::highest_pcep_id; ++id)
        ASSERT_EQ(node.send(id, {1, 1230}), Refusal::granted);
    EXPECT_EQ(service().received, 2U * paths + facts::highest_pcep_id);
    node.advance(second);
    EXPECT_EQ(service(), (Frames{20'511, 20'511, 0}));
    EXPECT_EQ(frames(node.pcep(511)), (Frames{2, 3, 0}));

    for (const Handle queue : queues)
        ASSERT_EQ(node.remove_queue(queue), Refusal::granted);
    for (std::uint32_t number = 0; number < paths; ++number)
        ASSERT_EQ(node.offer(numbered_mac(number), {1, 1230}), Refusal::granted);
    EXPECT_EQ(service(), (Frames{30'511, 20'511, 10'000}));
    for (std::uint32_t number = 0; number < paths; ++number)
        ASSERT_EQ(node.ebcom.delete_path(numbered_mac(number)), Refusal::granted);
}
