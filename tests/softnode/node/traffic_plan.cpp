/*
 * traffic_plan.cpp - drawing nodes and loads, and carrying them out.
 */
#include "traffic_plan.h"

#include "draw.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

namespace facts = softnode::facts;
using softnode::Handle;

namespace
{

constexpr std::uint32_t addresses = 6;
constexpr std::uint16_t first_group = 100;
constexpr std::array<std::uint32_t, 8> senders{1, 3, 5, 6, 11, 12, first_group, first_group + 1};

std::uint32_t draw_length()
{
    if (draw_once_in(8))
        return draw_between(1U, facts::longest_frame);
    return draw_once_in(3) ? draw_between(1U, 8U) : draw_between(60U, 1600U);
}

std::uint64_t draw_count()
{
    return draw_once_in(20) ? std::numeric_limits<std::uint64_t>::max() : draw_of_any_size(10);
}

std::size_t draw_number()
{
    return draw_between(0U, 1000U);
}

/* kbit/s: mostly of the line's magnitude, also above it. */
std::uint32_t draw_rate()
{
    return draw_once_in(4) ? draw_of_any_size(14) : draw_between(10'000U, 12'000'000U);
}

ork_qos_rate draw_limit()
{
    if (draw_once_in(2))
        return {0, 0};
    return {draw_once_in(10) ? 0 : draw_rate(), draw_once_in(3) ? draw_of_any_size(6) : draw_between(60U, 8000U)};
}

NodePlan::PlannedScheduler draw_scheduler()
{
    ork_qos_scheduler_params params = scheduler_params();
    params.qosRates.peak = draw_limit();
    params.qosRates.sr_mr_u.sustain = draw_limit();
    params.serviceQuantum = draw_once_in(3) ? draw_of_any_size(14) : 3036;
    params.lengthCorrection = static_cast<std::int8_t>(draw_once_in(2) ? 0 : draw_between(-20, 24));
    return {params, draw_number()};
}

NodePlan::PlannedQueue draw_queue()
{
    const std::uint32_t threshold = draw_once_in(5) ? draw_of_any_size(10) : draw_between(1000U, 100'000U);
    if (draw_once_in(4))
        return {draw_number(), {0, 0, threshold}};
    const std::uint32_t rate = draw_once_in(10) ? 0 : draw_rate();
    const std::uint32_t burst = draw_once_in(4) ? draw_of_any_size(6) : draw_between(60U, 8000U);
    return {draw_number(), {rate, burst, threshold}};
}

Step draw_step()
{
    const auto kind = *rc::gen::weightedElement<Step::Kind>(
        {{8, Step::offer}, {4, Step::send}, {8, Step::pass}, {1, Step::remove_queue}, {1, Step::lay_path}});
    return {kind, draw_number(), {draw_count(), draw_length()}, draw_of_any_size(25)};
}

template <class Thing> std::vector<Thing> draw_several(std::uint32_t most, Thing (*draw_one)())
{
    std::vector<Thing> several(draw_between(1U, most));
    std::generate(several.begin(), several.end(), draw_one);
    return several;
}

} // namespace

NodePlan draw_node()
{
    return {draw_several(8, draw_scheduler), draw_several(6, draw_queue), draw_several(addresses, draw_number)};
}

std::vector<Step> draw_load()
{
    return draw_several(40, draw_step);
}

PlannedNode::PlannedNode(const NodePlan &plan)
{
    std::vector<Handle> schedulers{Handle::null};
    for (auto scheduler : plan.schedulers) {
        /* Every other one below the latest: deep trees as well as wide ones. */
        const bool deeper = scheduler.parent % 2 == 0;
        scheduler.params.parent =
            pointer_of(deeper ? schedulers.back() : schedulers[scheduler.parent % schedulers.size()]);
        schedulers.push_back(node.add_scheduler(scheduler.params));
    }
    std::vector<Handle> queues;
    for (const auto &queue : plan.queues)
        queues.push_back(node.add_queue(schedulers[1 + queue.scheduler % plan.schedulers.size()], queue.shaping));
    for (std::uint32_t address = 0; address < plan.paths.size(); ++address)
        node.lay_path(numbered_mac(address), queues[plan.paths[address] % queues.size()]);

    std::vector<Handle> pceps;
    for (std::uint32_t id = 1; id <= 2 * addresses; ++id)
        pceps.push_back(node.add_pcep(id, numbered_mac(id % addresses), numbered_mac((id + 1) % (addresses + 1))));
    node.add_group(first_group, {1, 2, 3});
    node.add_group(first_group + 1, {4, 7, 12});
    EXPECT_EQ(node.pceps.delete_pcep(pceps[1]), softnode::Refusal::granted) << "a member that does not exist";
}

void PlannedNode::take(const Step &step, std::uint64_t piece)
{
    switch (step.kind) {
    case Step::offer:
        node.offer(numbered_mac(static_cast<std::uint32_t>(step.which % addresses)), step.frames);
        break;
    case Step::send:
        node.send(senders[step.which % senders.size()], step.frames);
        break;
    case Step::pass:
        pass(step.nanoseconds, piece);
        break;
    case Step::remove_queue:
        if (node.qos.queues().size() > 0)
            node.remove_queue(standing_queue(step.which));
        break;
    case Step::lay_path:
        if (node.qos.queues().size() > 0)
            node.lay_path(numbered_mac(static_cast<std::uint32_t>(step.which % addresses)),
                          standing_queue(step.which / addresses));
        break;
    }
}

void PlannedNode::pass(std::uint64_t nanoseconds, std::uint64_t piece)
{
    for (std::uint64_t left = nanoseconds; piece != 0 && left > piece; left -= piece, nanoseconds -= piece)
        node.advance(piece);
    node.advance(nanoseconds);
}

Handle PlannedNode::standing_queue(std::size_t number) const
{
    const auto &queues = node.qos.queues();
    return std::next(queues.begin(), static_cast<std::ptrdiff_t>(number % queues.size()))->first;
}
