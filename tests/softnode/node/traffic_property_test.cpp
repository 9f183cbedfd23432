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

/* Time in which a rate moves so many frames. */
std::uint64_t time_of(std::uint64_t frames, std::uint32_t length, std::uint64_t rate)
{
    return softnode::time_to_move(frames * length * octet, rate);
}

Wide difference(Wide left, Wide right)
{
    return left > right ? left - right : right - left;
}

Wide microbits(const softnode::Tally &sent)
{
    return Wide{sent.octets} * octet;
}

/* Keeps the line busy for a frame, so that what comes next begins together. */
void occupy_line(LoadedNode &node)
{
    const softnode::Mac other = numbered_mac(1'000'000);
    node.lay_path(other, node.add_queue(node.add_scheduler()));
    node.offer(other, {1, 9000});
}

/* Sent so much until then. */
struct Reading {
    Instant when;
    softnode::Tally sent;
};

/* Between any two readings, no more was sent than the excess octets and what the rate moves in between. */
void check_envelope(const std::vector<Reading> &readings, std::uint64_t rate, std::uint64_t excess,
                    std::int64_t correction)
{
    for (auto from = readings.begin(); from != readings.end(); ++from)
        for (auto to = from; to != readings.end(); ++to) {
            const auto frames = static_cast<std::int64_t>(to->sent.frames - from->sent.frames);
            const auto cost = static_cast<std::int64_t>(to->sent.octets - from->sent.octets) + frames * correction;
            RC_ASSERT(cost <= 0 || Wide{static_cast<std::uint64_t>(cost)} * octet <=
                                       Wide{excess} * octet + softnode::moved(rate, to->when - from->when));
        }
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

/* Shaped at any level of a chain, with any burst. */
RC_GTEST_PROP(TrafficProperty, BackloggedFramesLeaveAtTheLowestRateOnTheirWay, ())
{
    LoadedNode node;
    const auto length = draw_between(1U, draw_once_in(2) ? 100U : 9000U);
    Handle above = Handle::null;
    std::uint64_t lowest = facts::line_rate * length / (length + 20);
    for (auto levels = draw_between(1U, 7U); levels > 0; --levels) {
        ork_qos_scheduler_params params = scheduler_params(above);
        for (ork_qos_rate *limit : {&params.qosRates.peak, &params.qosRates.sr_mr_u.sustain})
            if (draw_once_in(4)) {
                *limit = {draw_between(1U, draw_once_in(2) ? 100'000U : 9'900'000U), draw_between(0U, 2 * length)};
                lowest = std::min(lowest, limit->rate);
            }
        above = node.add_scheduler(params);
    }
    const auto rate = draw_between(1U, 9'900'000U);
    lowest = std::min<std::uint64_t>(lowest, rate);
    const Handle queue = node.add_queue(above, {rate, draw_between(0U, 2 * length), 4'000'000'000});
    node.lay_path(numbered_mac(1), queue);
    node.offer(numbered_mac(1), {plenty, length});

    /* The burst is through by then, unless the second lowest rate is nearly the same. */
    node.advance(time_of(20'000, length, lowest));
    const softnode::Tally before = node.queue(queue).counters[Fate::sent];
    const std::uint64_t interval = time_of(10'000, length, lowest);
    node.advance(interval);
    RC_ASSERT(node.queue(queue).waiting().frames > 0U);
    const Wide sent = microbits(node.queue(queue).counters[Fate::sent]) - microbits(before);
    const Wide expected = softnode::moved(lowest, interval);
    RC_ASSERT(difference(sent, expected) * 1000 <= expected);
}

/* Whatever the others offer, as long as its rate is no more than its share. */
RC_GTEST_PROP(TrafficProperty, AShapedQueueHasItsRateBesideAFlood, ())
{
    LoadedNode node;
    const Handle shared = node.add_scheduler(draw_between<std::uint64_t>(1'000, 9'000'000));
    const std::uint64_t all = node.qos.schedulers().at(shared).params.qosRates.peak.rate;
    const auto count = draw_between(1U, 7U);
    std::vector<Handle> queues;
    for (std::uint32_t number = 0; number <= count; ++number) {
        const auto length = draw_between(64U, 1600U);
        const auto rate = static_cast<std::uint32_t>(all * draw_between(50U, 90U) / 100 / (count + 1));
        queues.push_back(node.add_queue(shared, number == 0 ? Shaping{0, 0, 2'000'000'000}
                                                            : Shaping{rate, 3036 + 2 * 1600, 2'000'000'000}));
        node.lay_path(numbered_mac(number), queues.back());
        node.offer(numbered_mac(number), {plenty, length});
    }
    const std::uint64_t interval = time_of(5'000, 1600, all);
    node.advance(interval / 4);
    std::vector<softnode::Tally> before;
    for (const Handle queue : queues)
        before.push_back(node.queue(queue).counters[Fate::sent]);
    node.advance(interval);
    for (std::uint32_t number = 1; number <= count; ++number) {
        const softnode::Queue &queue = node.queue(queues[number]);
        const Wide expected = softnode::moved(queue.rate, interval);
        RC_ASSERT(queue.waiting().frames > 0U);
        RC_ASSERT(difference(microbits(queue.counters[Fate::sent]) - microbits(before[number]), expected) <=
                  Wide{3036 + 2 * 1600} * octet);
    }
}

RC_GTEST_PROP(TrafficProperty, NothingSendsMoreThanItsBurstAFrameAndItsRate, ())
{
    PlannedNode planned(draw_node());
    const LoadedNode &node = planned.node;
    std::uint32_t longest = 0;
    std::map<Handle, std::vector<Reading>> readings;
    std::vector<Reading> on_the_line;
    for (const Step &step : draw_load()) {
        if (step.kind == Step::remove_queue)
            continue;
        longest = std::max(longest, step.frames.length);
        planned.take(step);
        std::map<Handle, softnode::Tally> sent;
        for (const auto &[handle, queue] : node.qos.queues()) {
            sent[handle] += queue.counters[Fate::sent];
            for (Handle above = queue.scheduler; above != Handle::null; above = node.qos.schedulers().at(above).parent)
                sent[above] += queue.counters[Fate::sent];
            sent[Handle::null] += queue.counters[Fate::sent];
        }
        for (const auto &[handle, tally] : sent)
            readings[handle].push_back({node.clock.now(), tally});
    }
    const auto check = [&](Handle handle, std::uint64_t rate, std::uint32_t burst, std::int64_t correction) {
        if (rate != 0 || burst != 0)
            check_envelope(readings[handle], rate, std::max(burst, longest + 24) + longest + 24, correction);
    };
    check(Handle::null, facts::line_rate, 0, 20);
    for (const auto &[handle, queue] : node.qos.queues())
        check(handle, queue.rate, queue.bucket_size, node.qos.schedulers().at(queue.scheduler).params.lengthCorrection);
    for (const auto &[handle, scheduler] : node.qos.schedulers())
        for (const ork_qos_rate &limit : {scheduler.params.qosRates.peak, scheduler.params.qosRates.sr_mr_u.sustain})
            check(handle, limit.rate, limit.bucketSize, scheduler.params.lengthCorrection);
}

/* A frame that nothing shuts off leaves, or another one before it, as soon as the line has carried the longest. */
RC_GTEST_PROP(TrafficProperty, TheLineIsNeverIdleWhileAFrameMayLeave, ())
{
    PlannedNode planned(draw_node());
    LoadedNode &node = planned.node;
    for (const Step &step : draw_load()) {
        planned.take(step);
        for (const auto &[handle, queue] : node.qos.queues()) {
            bool open = queue.backlogged();
            for (const softnode::Child *each = &queue; each->above; each = each->above)
                open = open && each->shaper.opens_at() <= node.clock.now();
            if (!open)
                continue;
            const std::uint64_t before = node.ebcom.counters()[Fate::sent].frames;
            node.advance(52'444);
            RC_ASSERT(node.ebcom.counters()[Fate::sent].frames != before);
        }
    }
}

/* Queues of one scheduler, or schedulers below one with a queue each, that always have frames. */
RC_GTEST_PROP(TrafficProperty, BackloggedSiblingsShareWithinAQuantumAndAFrame, ())
{
    LoadedNode node;
    const Handle shared = node.add_scheduler(draw_once_in(2) ? 0 : draw_between<std::uint64_t>(1, facts::line_rate));
    const bool queues_of_one = draw_once_in(2);
    struct Sibling {
        Handle queue;
        std::uint32_t length;
        double quantum;
    };
    std::vector<Sibling> siblings;
    occupy_line(node);
    const auto count = draw_between(2U, 8U);
    for (std::uint32_t number = 0; number < count; ++number) {
        ork_qos_scheduler_params params = scheduler_params(shared);
        params.serviceQuantum = draw_between(64U, 9000U);
        const Handle above = queues_of_one ? shared : node.add_scheduler(params);
        const auto length = draw_between(1U, 9000U);
        siblings.push_back({node.add_queue(above, {0, 0, 4'000'000'000}), length,
                            queues_of_one ? 3036.0 : static_cast<double>(params.serviceQuantum)});
        node.lay_path(numbered_mac(number), siblings.back().queue);
        node.offer(numbered_mac(number), {plenty, length});
    }
    node.advance(draw_between(0U, 10'000'000U));
    const auto turns = [&](const Sibling &each) {
        return static_cast<double>(node.queue(each.queue).counters[Fate::sent].octets) / each.quantum;
    };
    const auto frame = [](const Sibling &each) { return each.length / each.quantum; };
    for (const Sibling &one : siblings) {
        RC_ASSERT(node.queue(one.queue).waiting().frames > 0U);
        for (const Sibling &other : siblings)
            RC_ASSERT(turns(one) - turns(other) <= 1.0 + std::max(frame(one), frame(other)) + 1e-9);
    }
}

RC_GTEST_PROP(TrafficProperty, FramesOfAQueueLeaveInTheOrderThatTheyEntered, ())
{
    PlannedNode planned(draw_node());
    softnode::QosGraph &qos = planned.node.qos;
    std::map<softnode::Mac, std::uint64_t> entered;
    std::map<softnode::Mac, std::uint64_t> left;
    softnode::Instant now = 0;
    const auto depart = [&] {
        while (const auto departure = qos.depart(now)) {
            std::uint64_t &latest = left[departure->frame.destination];
            RC_ASSERT(departure->frame.identity > latest);
            latest = departure->frame.identity;
        }
    };
    for (const Step &step : draw_load()) {
        const Handle queue = planned.standing_queue(step.which);
        const std::vector<softnode::Mac> there{numbered_mac(static_cast<std::uint32_t>(queue))};
        for (std::uint64_t frame = 0; frame < step.frames.count % 30; ++frame) {
            qos.enter(queue, there, {1, step.frames.length, ++entered[there[0]]}, now);
            depart();
        }
        now += step.nanoseconds;
        depart();
    }
}
