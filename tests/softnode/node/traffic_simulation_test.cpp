/*
 * traffic_simulation_test.cpp - the node beside a simulation that looks at every nanosecond.
 *
 * The simulation is as plain as can be: it counts tokens in every nanosecond and sorts nothing. The line is counted in
 * fifths of a nanosecond, of which an octet takes four.
 */
#include "draw.h"
#include "traffic.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <deque>
#include <vector>

namespace facts = softnode::facts;
using softnode::Fate;
using softnode::Handle;

namespace
{

constexpr std::int64_t octet = 8'000'000; /* microbits, of which a rate of 1 kbit/s moves one in a nanosecond */

struct SimulatedBucket {
    std::int64_t rate = 0;
    std::int64_t depth = 0;
    std::int64_t tokens = depth;

    bool limits() const
    {
        return rate != 0 || depth != 0;
    }
};

/* A scheduler or a queue. */
struct Simulated {
    std::size_t parent = 0; /* index; the port is its own */
    std::int64_t quantum = 0;
    std::int64_t correction = 0;
    std::vector<SimulatedBucket> buckets{};

    std::int64_t credit = 0;
    std::deque<std::size_t> round{}; /* of a scheduler: the children that may send; whose turn it is first */

    std::uint64_t most_blocks = 0;
    std::deque<std::int64_t> frames{}; /* lengths */
    std::deque<std::uint64_t> since{}; /* when they entered */
    std::uint64_t blocks = 0;
    std::uint64_t sent = 0;
    std::uint64_t dropped = 0;
    std::uint64_t delays = 0;

    bool backlogged() const
    {
        return !frames.empty() || !round.empty();
    }

    bool open() const
    {
        return std::all_of(buckets.begin(), buckets.end(),
                           [](const SimulatedBucket &bucket) { return !bucket.limits() || bucket.tokens >= 0; });
    }
};

std::uint64_t blocks_of(std::int64_t length)
{
    return (static_cast<std::uint64_t>(length) + facts::block_octets - 1) / facts::block_octets;
}

struct Simulation {
    std::vector<Simulated> all{Simulated{}}; /* the port, then in the order of creation */
    std::uint64_t now = 0;
    std::uint64_t line_free_at = 0; /* fifths of a nanosecond */
    std::uint64_t sent = 0;

    bool takes_part(std::size_t child) const
    {
        const auto &round = all[all[child].parent].round;
        return std::find(round.begin(), round.end(), child) != round.end();
    }

    /* Has a child take part in the turns above it, if it may; and those above it, if they did for want of it alone. */
    void join(std::size_t child)
    {
        if (child == 0) {
            line_free_at = std::max(line_free_at, 5 * now);
            return;
        }
        if (!all[child].backlogged() || !all[child].open() || takes_part(child))
            return;
        Simulated &above = all[all[child].parent];
        const bool was_idle = !above.backlogged();
        above.round.push_back(child);
        if (was_idle)
            join(all[child].parent);
    }

    void charge(std::size_t child, std::int64_t length)
    {
        Simulated &charged = all[child];
        const std::int64_t cost = std::max<std::int64_t>(length + charged.correction, 0) * octet;
        for (SimulatedBucket &bucket : charged.buckets)
            bucket.tokens = std::min(bucket.tokens, std::max(bucket.depth, cost)) - cost;
        auto &round = all[charged.parent].round;
        charged.credit -= length;
        if (charged.credit <= 0)
            std::rotate(round.begin(), round.begin() + 1, round.end());
        if (charged.backlogged() && charged.open())
            return;
        std::erase(round, child);
        charged.credit = std::min<std::int64_t>(charged.credit, 0);
    }

    std::size_t next_queue()
    {
        std::size_t at = 0;
        while (!all[at].round.empty()) {
            auto &round = all[at].round;
            for (;;) {
                Simulated &first = all[round.front()];
                if (first.credit <= 0)
                    first.credit += first.quantum;
                if (first.credit > 0)
                    break;
                std::rotate(round.begin(), round.begin() + 1, round.end());
            }
            at = round.front();
        }
        return at;
    }

    void send_what_may_leave()
    {
        while (all[0].backlogged() && line_free_at <= 5 * now) {
            const std::size_t leaving = next_queue();
            Simulated &queue = all[leaving];
            const std::int64_t length = queue.frames.front();
            queue.frames.pop_front();
            queue.blocks -= blocks_of(length);
            queue.delays += now - queue.since.front();
            queue.since.pop_front();
            ++queue.sent;
            ++sent;
            for (std::size_t child = leaving; child != 0; child = all[child].parent)
                charge(child, length);
            line_free_at += 4 * static_cast<std::uint64_t>(length + 20);
        }
    }

    bool leaves_at_once(std::size_t queue) const
    {
        if (!all[queue].frames.empty() || line_free_at > 5 * now)
            return false;
        for (std::size_t each = queue; each != 0; each = all[each].parent)
            if (!all[each].open())
                return false;
        return true;
    }

    void offer(std::size_t queue, std::int64_t length)
    {
        Simulated &entered = all[queue];
        if (!leaves_at_once(queue) && entered.blocks + blocks_of(length) > entered.most_blocks) {
            ++entered.dropped;
            return;
        }
        entered.frames.push_back(length);
        entered.since.push_back(now);
        entered.blocks += blocks_of(length);
        join(queue);
        send_what_may_leave();
    }

    void pass_a_nanosecond()
    {
        ++now;
        for (Simulated &each : all)
            for (SimulatedBucket &bucket : each.buckets)
                bucket.tokens += bucket.rate;
        for (std::size_t each = 1; each < all.size(); ++each)
            join(each);
        send_what_may_leave();
    }
};

ork_qos_rate draw_limit()
{
    if (draw_once_in(2))
        return {0, 0};
    return {draw_once_in(8) ? 0 : draw_between(100'000U, 12'000'000U), draw_once_in(2) ? 0 : draw_between(1U, 3000U)};
}

SimulatedBucket bucket_of(std::uint64_t rate, std::uint32_t burst)
{
    return {static_cast<std::int64_t>(rate), burst * octet};
}

class Pair
{
public:
    Pair()
    {
        for (auto left = draw_between(1U, 6U); left > 0; --left)
            add_scheduler();
        for (auto left = draw_between(1U, 5U); left > 0; --left)
            add_queue();
    }

    void offer(std::uint32_t frames, std::uint32_t length)
    {
        const auto number = draw_between<std::size_t>(0, queues_.size() - 1);
        node_.offer(numbered_mac(static_cast<std::uint32_t>(number)), {frames, length});
        for (std::uint32_t frame = 0; frame < frames; ++frame)
            simulation_.offer(schedulers_.size() + number, length);
    }

    void pass(std::uint64_t nanoseconds)
    {
        for (std::uint64_t nanosecond = 0; nanosecond < nanoseconds; ++nanosecond) {
            node_.advance(1);
            simulation_.pass_a_nanosecond();
            RC_ASSERT(node_.ebcom.counters()[Fate::sent].frames == simulation_.sent);
        }
    }

    void check_equal() const
    {
        for (std::size_t number = 0; number < queues_.size(); ++number) {
            const softnode::Queue &queue = node_.queue(queues_[number]);
            const Simulated &simulated = simulation_.all[schedulers_.size() + number];
            RC_ASSERT(queue.counters[Fate::sent].frames == simulated.sent);
            RC_ASSERT(queue.counters[Fate::dropped].frames == simulated.dropped);
            RC_ASSERT(queue.waiting().frames == simulated.frames.size());
            RC_ASSERT(queue.waiting().blocks == simulated.blocks);
            RC_ASSERT(queue.delays.sum() == simulated.delays);
        }
    }

private:
    void add_scheduler()
    {
        const auto parent = draw_between<std::size_t>(0, schedulers_.size() - 1);
        ork_qos_scheduler_params params = scheduler_params(schedulers_[parent]);
        params.qosRates.peak = draw_limit();
        params.qosRates.sr_mr_u.sustain = draw_limit();
        params.serviceQuantum = draw_between(0U, 4000U);
        params.lengthCorrection = static_cast<std::int8_t>(draw_once_in(2) ? 0 : draw_between(-128, 127));
        schedulers_.push_back(node_.add_scheduler(params));
        const auto &[peak, last] = params.qosRates;
        simulation_.all.push_back(
            {parent,
             std::max<std::int64_t>(params.serviceQuantum, 64),
             params.lengthCorrection,
             {bucket_of(peak.rate, peak.bucketSize), bucket_of(last.sustain.rate, last.sustain.bucketSize)}});
    }

    void add_queue()
    {
        const auto under = draw_between<std::size_t>(1, schedulers_.size() - 1);
        const ork_qos_rate limit = draw_limit();
        const std::uint32_t blocks = draw_between(0U, 30U);
        queues_.push_back(node_.add_queue(schedulers_[under], {static_cast<std::uint32_t>(limit.rate), limit.bucketSize,
                                                               blocks * facts::block_octets}));
        node_.lay_path(numbered_mac(static_cast<std::uint32_t>(queues_.size() - 1)), queues_.back());
        const Simulated &above = simulation_.all[under];
        simulation_.all.push_back({under, above.quantum, above.correction, {bucket_of(limit.rate, limit.bucketSize)}});
        simulation_.all.back().most_blocks = blocks;
    }

    LoadedNode node_;
    std::vector<Handle> schedulers_{Handle::null};
    std::vector<Handle> queues_;
    Simulation simulation_;
};

} // namespace

RC_GTEST_PROP(TrafficSimulation, AgreesWithTheNode, ())
{
    Pair pair;
    const auto steps = draw_between(1U, 30U);
    for (std::uint32_t step = 0; step < steps; ++step) {
        pair.offer(draw_between(0U, 10U), draw_once_in(3) ? draw_between(1U, 8U) : draw_between(1U, 1600U));
        pair.pass(draw_of_any_size(14));
        pair.check_equal();
    }
}
