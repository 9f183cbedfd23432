/*
 * traffic_simulation_test.cpp - the node beside a simulation that looks at every nanosecond.
 *
 * The simulation is as plain as can be, and knows whole nanoseconds and whole octets only. So rates are such that an
 * octet takes a whole number of nanoseconds.
 */
#include "draw.h"
#include "traffic.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <deque>

namespace facts = softnode::facts;
using softnode::Fate;
using softnode::Handle;

namespace
{

/* The rate, in kbit/s, at which an octet takes so many nanoseconds. */
constexpr std::uint64_t rate_of(std::uint64_t nanoseconds)
{
    return 8'000'000 / nanoseconds;
}

struct SimulatedQueue {
    std::uint64_t nanoseconds_per_octet = 0; /* 0: unshaped */
    std::uint64_t burst = 0;
    std::uint64_t most_blocks = 0;

    std::uint64_t nanoseconds_saved = 0; /* tokens */
    std::deque<std::uint32_t> frames;
    std::uint64_t blocks = 0;
    std::uint64_t sent = 0;
    std::uint64_t dropped = 0;

    bool ready(std::uint32_t length) const
    {
        return nanoseconds_per_octet == 0 || nanoseconds_saved >= length * nanoseconds_per_octet;
    }

    static std::uint64_t blocks_of(std::uint32_t length)
    {
        return (length + facts::block_octets - 1) / facts::block_octets;
    }
};

struct Simulation {
    std::uint64_t nanoseconds_per_octet = 1; /* on the line */
    std::vector<SimulatedQueue> queues;
    std::uint64_t now = 0;
    std::uint64_t line_free_at = 0;
    std::size_t next = 0; /* whose turn is first */
    std::uint64_t sent = 0;

    void send(SimulatedQueue &queue, std::uint32_t length)
    {
        if (queue.nanoseconds_per_octet != 0)
            queue.nanoseconds_saved -= length * queue.nanoseconds_per_octet;
        line_free_at = now + length * nanoseconds_per_octet;
        next = static_cast<std::size_t>(&queue - queues.data()) + 1;
        ++queue.sent;
        ++sent;
    }

    void offer(SimulatedQueue &queue, std::uint32_t length)
    {
        const std::uint64_t blocks = SimulatedQueue::blocks_of(length);
        if (queue.nanoseconds_per_octet != 0 && length > queue.burst)
            ++queue.dropped;
        else if (queue.frames.empty() && queue.ready(length) && line_free_at <= now)
            send(queue, length);
        else if (queue.blocks + blocks <= queue.most_blocks) {
            queue.frames.push_back(length);
            queue.blocks += blocks;
        } else
            ++queue.dropped;
    }

    void pass_a_nanosecond()
    {
        ++now;
        for (SimulatedQueue &queue : queues)
            queue.nanoseconds_saved = std::min(queue.nanoseconds_saved + 1, queue.burst * queue.nanoseconds_per_octet);
        if (line_free_at > now)
            return;
        for (std::size_t turn = 0; turn < queues.size(); ++turn) {
            SimulatedQueue &queue = queues[(next + turn) % queues.size()];
            if (queue.frames.empty() || !queue.ready(queue.frames.front()))
                continue;
            const std::uint32_t length = queue.frames.front();
            queue.frames.pop_front();
            queue.blocks -= SimulatedQueue::blocks_of(length);
            send(queue, length);
            return;
        }
    }
};

/* A nanosecond per octet, or a divisor of the 8,000,000 beyond it. */
std::uint64_t draw_pace()
{
    return *rc::gen::element<std::uint64_t>(1, 2, 4, 5, 8, 10, 16, 20, 25, 40);
}

class Pair
{
public:
    Pair()
    {
        simulation_.nanoseconds_per_octet = draw_pace();
        const Handle scheduler = node_.add_scheduler(rate_of(simulation_.nanoseconds_per_octet));
        const auto count = draw_between(1U, 4U);
        for (std::uint32_t number = 0; number < count; ++number)
            add_queue(scheduler, number);
    }

    void offer(std::uint32_t frames, std::uint32_t length)
    {
        const auto number = draw_between<std::size_t>(0, queues_.size() - 1);
        node_.offer(numbered_mac(static_cast<std::uint32_t>(number)), {frames, length});
        for (std::uint32_t frame = 0; frame < frames; ++frame)
            simulation_.offer(simulation_.queues[number], length);
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
            const SimulatedQueue &simulated = simulation_.queues[number];
            RC_ASSERT(queue.counters[Fate::sent].frames == simulated.sent);
            RC_ASSERT(queue.counters[Fate::dropped].frames == simulated.dropped);
            RC_ASSERT(queue.waiting().frames == simulated.frames.size());
            RC_ASSERT(queue.waiting().blocks == simulated.blocks);
        }
    }

private:
    void add_queue(Handle scheduler, std::uint32_t number)
    {
        const bool shaped = !draw_once_in(3);
        const std::uint64_t pace = shaped ? draw_pace() : 0;
        const std::uint32_t burst = shaped ? draw_between(1U, 3000U) : 0;
        const std::uint32_t blocks = draw_between(0U, 30U);
        const auto rate = static_cast<std::uint32_t>(shaped ? rate_of(pace) : 0);
        queues_.push_back(node_.add_queue(scheduler, {rate, burst, blocks * facts::block_octets}));
        node_.lay_path(numbered_mac(number), queues_.back());
        simulation_.queues.push_back({pace, burst, blocks, burst * pace, {}, 0, 0, 0});
    }

    LoadedNode node_;
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
