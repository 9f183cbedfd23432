/*
 * graph_boxes_test.cpp - what the boxes of the picture say.
 */
#include "softnode/views/graph_boxes.h"

#include "markup.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace softnode;

namespace
{

using Lines = std::vector<std::string>;

constexpr auto some_handle = static_cast<Handle>(0x5d0000000aU);

/* The lines of a box as they are read: without tags and margins, a blank between what is apart on one line. */
Lines lines_of(const DotBox &box)
{
    Lines lines;
    for (const std::string &row : between(box.label(), "<tr>", "</tr>")) {
        const std::string apart = replaced(row, "</td><td align=\"right\"", " </td><td");
        if (const std::string text = replaced(without_tags(apart), "&#160;", ""); !text.empty())
            lines.push_back(text);
    }
    return lines;
}

Queue queue_of(std::uint32_t rate, std::uint32_t threshold, std::uint32_t burst)
{
    return {some_handle, {rate, threshold, burst}, 0, 0};
}

Destinations destinations_of_count(std::size_t count)
{
    Destinations destinations;
    destinations.count = count;
    for (std::uint8_t number = 1; number <= std::min(count, Destinations::most_shown); ++number)
        destinations.shown.push_back({2, 0, 0, 2, 0, number});
    return destinations;
}

Pcep some_pcep()
{
    Pcep pcep;
    pcep.params = {{2, 0, 0, 3, 0, 1}, {2, 0, 0, 2, 0, 7}, 0x7fa0, 0, 3, 0xabcdef00, 0, 0, 1, {}};
    return pcep;
}

} // namespace

TEST(GraphBoxes, AShapedQueueShowsRateBurstAndThreshold)
{
    EXPECT_EQ(lines_of(queue_box(some_handle, queue_of(100'000, 1'048'576, 65'536), {})),
              (Lines{"100 Mbit/s 0x5d0000000a", "burst 64 KiB, threshold 1 MiB"}));
}

TEST(GraphBoxes, AQueueThatIsNotShapedHasNeitherRateNorBurst)
{
    EXPECT_EQ(lines_of(queue_box(some_handle, queue_of(0, 5'120'000, 0), {})),
              (Lines{"unshaped 0x5d0000000a", "threshold 5,000 KiB"}));
}

TEST(GraphBoxes, AQueueShowsItsDestinationsAndCountsTheRest)
{
    const Lines few = lines_of(queue_box(some_handle, queue_of(0, 256, 0), destinations_of_count(5)));
    EXPECT_EQ(few.back(), "02:00:00:02:00:05");
    const Lines many = lines_of(queue_box(some_handle, queue_of(0, 256, 0), destinations_of_count(10'001)));
    ASSERT_EQ(many.size(), 8U);
    EXPECT_EQ(many[2], "02:00:00:02:00:01");
    EXPECT_EQ(many.back(), "and 9,996 more");
}

TEST(GraphBoxes, AQueueShowsCountersOnceFramesCame)
{
    const std::vector<Mac> one{Mac{2, 0, 0, 2, 0, 1}};
    Queue queue = queue_of(0, 800 * facts::block_octets, 0);
    queue.counters.account(Fate::sent, {1'200, 64});
    queue.enter(one, {800, 64}, 0, false);
    EXPECT_EQ(lines_of(queue_box(some_handle, queue, {})).back(), "1,200 sent, 800 waiting");
    queue.enter(one, {3, 64}, 0, false);
    EXPECT_EQ(lines_of(queue_box(some_handle, queue, {})).back(), "1,200 sent, 800 waiting, 3 dropped");
}

TEST(GraphBoxes, AQueueThatHasSentNothingShowsWhatWaitsAndWhatWasDropped)
{
    const std::vector<Mac> one{Mac{2, 0, 0, 2, 0, 1}};
    Queue queue = queue_of(0, facts::block_octets, 0);
    EXPECT_EQ(queue.enter(one, {1, 64}, 0, false), 0U);
    EXPECT_EQ(lines_of(queue_box(some_handle, queue, {})).back(), "0 sent, 1 waiting");
    Queue full = queue_of(0, 0, 0);
    EXPECT_EQ(full.enter(one, {1, 64}, 0, false), 1U);
    EXPECT_EQ(lines_of(queue_box(some_handle, full, {})).back(), "0 sent, 0 waiting, 1 dropped");
}

TEST(GraphBoxes, PathsWithoutQueueAreShownAsSuch)
{
    EXPECT_EQ(lines_of(stranded_box(destinations_of_count(1))), (Lines{"without a queue", "02:00:00:02:00:01"}));
}

TEST(GraphBoxes, APcepShowsItsEnds)
{
    EXPECT_EQ(lines_of(pcep_box(some_handle, some_pcep(), {})),
              (Lines{"PCEP 3 0x5d0000000a", "from 02:00:00:03:00:01", "to 02:00:00:02:00:07", "remote id 11259375",
                     "VLAN 4000, priority 7"}));
    EXPECT_EQ(lines_of(pcep_box(some_handle, some_pcep(), {"no path leads there", Tone::alarm})).back(),
              "no path leads there");
}

TEST(GraphBoxes, PcepsThatAreOnlyCountedTellHowManyLeadNowhere)
{
    EXPECT_EQ(lines_of(further_pceps_box(1'461, 0)), (Lines{"and 1,461 more", "to their destinations"}));
    EXPECT_EQ(lines_of(further_pceps_box(461, 3)).back(), "no path leads to those of 3");
}

TEST(GraphBoxes, AGroupTellsOfMembersThatAreNoPceps)
{
    EXPECT_EQ(lines_of(group_box(some_handle, {300}, {})), (Lines{"Group 300", "0x5d0000000a", "no members"}));
    Group group{300};
    group.members = {4, 9};
    EXPECT_EQ(lines_of(group_box(some_handle, group, {{4, some_handle}})),
              (Lines{"Group 300", "0x5d0000000a", "PCEP 9 does not exist"}));
}

TEST(GraphBoxes, AChainListsItsSchedulersAndTheirRates)
{
    Registry<TreeScheduler> schedulers(Kind::scheduler);
    ork_qos_scheduler_params params{};
    const Handle upper = schedulers.add(Handle::null, params);
    params.qosRates = {.peak = {2'500'000, 0}, .sr_mr_u = {.sustain = {1'000'000, 0}}};
    const Handle lower = schedulers.add(upper, params);
    EXPECT_EQ(lines_of(chain_box({upper}, schedulers)), (Lines{"Scheduler", "0x5c00000001"}));
    EXPECT_EQ(lines_of(chain_box({upper, lower}, schedulers)),
              (Lines{"Chain of 2", "0x5c00000001", "0x5c00000002", "peak 2,500 Mbit/s", "sustain 1 Gbit/s"}));
}

TEST(GraphBoxes, TheEthernetDeviceShowsWhatIsSet)
{
    EbcomService ebcom;
    EXPECT_EQ(lines_of(interface_box(ebcom)), (Lines{"Ethernet device 7", "no interface"}));
    ASSERT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
    ASSERT_EQ(ebcom.set_globals({1500, 0x88b5, 0x3a, 0}), Refusal::granted);
    ebcom.set_timestamp_offset(-160);
    EXPECT_EQ(lines_of(interface_box(ebcom)), (Lines{"Ethernet device 7", "VSI 258", "MTU 1,500 octets",
                                                     "EtherType 0x88b5", "settings 10, 3", "timestamp offset -160"}));
}

TEST(GraphBoxes, TheTargetShowsItsHandle)
{
    EXPECT_EQ(lines_of(target_box(some_handle)), (Lines{"EHSFP", "0x5d0000000a"}));
}
