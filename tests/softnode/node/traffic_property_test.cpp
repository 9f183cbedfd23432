/*
 * traffic_property_test.cpp - what holds for traffic in every node and under every load.
 */
#include "draw.h"
#include "traffic_plan.h"

#include "softnode/common/facts.h"
#include "softnode/views/snapshot.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <utility>

namespace facts = softnode::facts;
using softnode::Counters;
using softnode::Fate;
using softnode::Handle;
using softnode::Instant;
using softnode::Wide;

namespace
{

/* Microbits, as rates of kbit/s move in nanoseconds. */
constexpr std::uint64_t octet = 8'000'000;

constexpr std::uint64_t plenty = 1'000'000;

void check_conserved(const Counters &counters, const softnode::Tally &waiting)
{
    const auto &received = counters[Fate::received];
    const auto &sent = counters[Fate::sent];
    const auto &dropped = counters[Fate::dropped];
    RC_ASSERT(received.frames == sent.frames + dropped.frames + waiting.frames);
    RC_ASSERT(received.octets == sent.octets + dropped.octets + waiting.octets);
}

void check_conserved(const LoadedNode &node)
{
    for (const auto &[handle, queue] : node.qos.queues()) {
        const softnode::Waiting waiting = queue.waiting();
        check_conserved(queue.counters, {waiting.frames, waiting.octets});
        RC_ASSERT(waiting.blocks * facts::block_octets <= queue.threshold);
        RC_ASSERT(waiting.octets <= waiting.blocks * facts::block_octets);
    }
    check_conserved(node.ebcom.counters(), node.waiting());
}

/* What a node with one queue under one scheduler has sent in a time, always with frames waiting. */
class Backlog
{
public:
    Backlog(std::uint64_t peak_rate, const Shaping &shaping, std::uint32_t length) : length_(length)
    {
        node_.lay_path(destination_, node_.add_queue(node_.add_scheduler(peak_rate), shaping));
        node_.offer(destination_, {plenty, length_});
    }

    Wide microbits_in(std::uint64_t nanoseconds)
    {
        const std::uint64_t before = sent();
        node_.advance(nanoseconds);
        RC_ASSERT(node_.waiting().frames > 0U);
        return Wide{sent() - before} * octet;
    }

private:
    std::uint64_t sent() const
    {
        return node_.ebcom.counters()[Fate::sent].octets;
    }

    const softnode::Mac destination_ = numbered_mac(1);
    std::uint32_t length_;
    LoadedNode node_;
};

/* Time in which a rate moves so many frames. */
std::uint64_t time_of(std::uint64_t frames, std::uint32_t length, std::uint64_t rate)
{
    return static_cast<std::uint64_t>(softnode::time_to_move(Wide{frames} * length * octet, rate));
}

Wide difference(Wide left, Wide right)
{
    return left > right ? left - right : right - left;
}

struct BackloggedQueue {
    Handle handle;
    Shaping shaping;
};

/*
 * Adds a scheduler and queues below it that always have frames waiting. Their rates fit the scheduler's, and a bucket
 * holds the longest frames of all of them.
 */
std::vector<BackloggedQueue> add_sharing_queues(LoadedNode &node, std::uint64_t rate, Handle parent)
{
    struct Share {
        std::uint32_t weight = draw_between(1U, 3U);
        std::uint32_t length = draw_between(800U, 1600U);
    };
    const std::vector<Share> shares(draw_between<std::size_t>(2, 3));
    std::uint32_t weights = 0;
    std::uint32_t burst = 0;
    for (const Share &share : shares) {
        weights += share.weight;
        burst += share.length;
    }
    const Handle scheduler = node.add_scheduler(rate, parent);
    std::vector<BackloggedQueue> queues;
    for (const Share &share : shares) {
        const Shaping shaping{static_cast<std::uint32_t>(rate * share.weight / weights), burst, 4'000'000'000};
        const softnode::Mac destination = numbered_mac(static_cast<std::uint32_t>(node.ebcom.paths().size()));
        queues.push_back({node.add_queue(scheduler, shaping), shaping});
        node.lay_path(destination, queues.back().handle);
        const std::uint32_t shorter = draw_between(share.length / 2, share.length);
        for (int round = 0; round < 50; ++round) {
            node.offer(destination, {1'000, share.length});
            node.offer(destination, {1'000, shorter});
        }
    }
    return queues;
}

/* Sent so much until then. */
struct Reading {
    Instant when;
    std::uint64_t octets;
};

/* Between any two readings, no more was sent than the burst and what the rate moves in between. */
void check_envelope(const std::vector<Reading> &readings, std::uint64_t burst, std::uint64_t rate)
{
    for (auto from = readings.begin(); from != readings.end(); ++from)
        for (auto to = from; to != readings.end(); ++to)
            RC_ASSERT(Wide{to->octets - from->octets} * octet <=
                      Wide{burst} * octet + softnode::moved(rate, to->when - from->when));
}

} // namespace

RC_GTEST_PROP(TrafficProperty, FramesAreSentDroppedOrWaitingEverywhere, ())
{
    PlannedNode planned(draw_node());
    for (const Step &step : draw_load()) {
        planned.take(step);
        check_conserved(planned.node);
    }
}

RC_GTEST_PROP(TrafficProperty, HoweverTimeIsCutTheSameHappens, ())
{
    const NodePlan plan = draw_node();
    PlannedNode whole(plan);
    PlannedNode cut(plan);
    const std::uint64_t piece = draw_between<std::uint64_t>(1, 100);
    for (const Step &step : draw_load()) {
        whole.take(step);
        cut.take(step, std::max(piece, step.nanoseconds / piece));
        RC_ASSERT(snapshot(whole.node, {}) == snapshot(cut.node, {}));
    }
}

RC_GTEST_PROP(TrafficProperty, TheSameCallsMakeTheSameBytes, ())
{
    const NodePlan plan = draw_node();
    const std::vector<Step> load = draw_load();
    PlannedNode once(plan);
    PlannedNode again(plan);
    for (const Step &step : load)
        once.take(step);
    for (const Step &step : load)
        again.take(step);
    RC_ASSERT(snapshot(once.node, {}) == snapshot(again.node, {}));
}

RC_GTEST_PROP(TrafficProperty, FramesTogetherAreTheSameAsOneByOne, ())
{
    const NodePlan plan = draw_node();
    PlannedNode together(plan);
    PlannedNode singly(plan);
    for (Step step : draw_load()) {
        step.frames.count %= 100;
        together.take(step);
        const bool frames = step.kind == Step::offer || step.kind == Step::send;
        for (std::uint64_t count = frames ? std::exchange(step.frames.count, 1) : 1; count > 0; --count)
            singly.take(step);
        RC_ASSERT(snapshot(together.node, {}) == snapshot(singly.node, {}));
    }
}

RC_GTEST_PROP(TrafficProperty, ABackloggedShapedQueueSendsAtItsRate, ())
{
    const auto length = draw_between(1U, draw_once_in(2) ? 100U : 9000U);
    const auto burst = draw_once_in(2) ? length : draw_between(length, 4 * length);
    const auto rate = draw_between(1U, draw_once_in(2) ? 100'000U : 9'900'000U);
    Backlog backlog(0, {rate, burst, 200'000'000}, length);

    backlog.microbits_in(time_of(500, length, rate)); /* the burst is through by then, even at the highest rate */
    const std::uint64_t interval = time_of(1500, length, rate);
    const Wide sent = backlog.microbits_in(interval);
    RC_ASSERT(difference(sent, softnode::moved(rate, interval)) < Wide{length} * octet);
    RC_ASSERT(difference(sent, softnode::moved(rate, interval)) * 1000 <= softnode::moved(rate, interval));
}

RC_GTEST_PROP(TrafficProperty, BackloggedShapedQueuesThatShareSchedulersSendAtTheirRates, ())
{
    LoadedNode node;
    std::vector<BackloggedQueue> queues;
    const auto fastest = draw_between<std::uint64_t>(1'000, facts::line_rate);
    for (auto left = draw_between(1U, 2U); left > 0; --left) {
        const Handle parent = queues.empty() ? Handle::null : node.queue(queues.back().handle).scheduler;
        const auto below = add_sharing_queues(node, draw_between(fastest - fastest / 4, fastest), parent);
        queues.insert(queues.end(), below.begin(), below.end());
    }
    std::uint64_t interval = 0;
    for (const auto &[handle, shaping] : queues)
        interval = std::max(interval, time_of(1100, shaping.burst, shaping.rate));

    node.advance(interval / 20); /* the bursts are through by then */
    std::map<Handle, std::uint64_t> before;
    for (const auto &[handle, shaping] : queues)
        before[handle] = node.queue(handle).counters[Fate::sent].octets;
    node.advance(interval);
    for (const auto &[handle, shaping] : queues) {
        const Wide sent = Wide{node.queue(handle).counters[Fate::sent].octets - before[handle]} * octet;
        const Wide expected = softnode::moved(shaping.rate, interval);
        RC_ASSERT(node.queue(handle).waiting().frames > 0U);
        RC_ASSERT(difference(sent, expected) * 1000 <= expected);
    }
}

RC_GTEST_PROP(TrafficProperty, ABackloggedSchedulerSendsAtItsRate, ())
{
    const auto length = draw_between(1U, 9000U);
    const auto rate = draw_between<std::uint64_t>(1, draw_once_in(2) ? 100'000 : facts::line_rate);
    Backlog backlog(rate, {0, 0, 200'000'000}, length);
    const std::uint64_t interval = time_of(1500, length, rate);
    const Wide sent = backlog.microbits_in(interval);
    RC_ASSERT(difference(sent, softnode::moved(rate, interval)) <= Wide{length} * octet);
    RC_ASSERT(difference(sent, softnode::moved(rate, interval)) * 1000 <= softnode::moved(rate, interval));
}

RC_GTEST_PROP(TrafficProperty, NoQueueSendsMoreThanItsBurstAndItsRate, ())
{
    PlannedNode planned(draw_node());
    std::map<Handle, std::vector<Reading>> readings;
    for (const Step &step : draw_load()) {
        planned.take(step);
        for (const auto &[handle, queue] : planned.node.qos.queues())
            readings[handle].push_back({planned.node.clock.now(), queue.counters[Fate::sent].octets});
    }
    for (const auto &[handle, queue] : planned.node.qos.queues())
        if (queue.shaped())
            check_envelope(readings[handle], queue.bucket_size, queue.rate);
}

RC_GTEST_PROP(TrafficProperty, NoSchedulerSendsMoreThanAFrameAndItsRate, ())
{
    PlannedNode planned(draw_node());
    std::uint32_t longest = 0;
    std::map<Handle, std::vector<Reading>> readings;
    for (const Step &step : draw_load()) {
        if (step.kind == Step::remove_queue)
            continue;
        longest = std::max(longest, step.frames.length);
        planned.take(step);
        std::map<Handle, std::uint64_t> sent;
        for (const auto &[handle, queue] : planned.node.qos.queues())
            sent[queue.scheduler] += queue.counters[Fate::sent].octets;
        for (const auto &[scheduler, octets] : sent)
            readings[scheduler].push_back({planned.node.clock.now(), octets});
    }
    for (const auto &[handle, scheduler] : planned.node.qos.schedulers()) {
        const std::uint64_t peak = scheduler.params.qosRates.peak.rate;
        check_envelope(readings[handle], longest, peak == 0 ? facts::line_rate : std::min(peak, facts::line_rate));
    }
}

RC_GTEST_PROP(TrafficProperty, BackloggedQueuesHaveTheSameNumberOfTurns, ())
{
    LoadedNode node;
    const Handle shared = node.add_scheduler(draw_between<std::uint64_t>(1, facts::line_rate));
    std::vector<Handle> queues;
    const auto count = draw_between(2U, 8U);
    for (std::uint32_t number = 0; number < count; ++number) {
        queues.push_back(node.add_queue(shared));
        node.lay_path(numbered_mac(number), queues.back());
        node.offer(numbered_mac(number), {plenty, draw_between(1U, 9000U)});
    }
    node.advance(draw_between(0U, 1'000'000U));
    std::vector<std::uint64_t> turns;
    for (const Handle queue : queues)
        turns.push_back(node.queue(queue).counters[Fate::sent].frames);
    const auto [fewest, most] = std::minmax_element(turns.begin(), turns.end());
    RC_ASSERT(*most - *fewest <= 1U);
}
