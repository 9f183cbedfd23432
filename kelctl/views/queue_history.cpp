// Thinning samples out, and the steps between those that are left.
#include "kelctl/views/queue_history.h"

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t most_moments = 400; // an even number: the last of one more stays when every second one goes

// A counter that is smaller than before was reset, and counts from 0.
uint64_t grown(uint64_t before, uint64_t now)
{
    return now >= before ? now - before : now;
}

} // namespace

// The newest sample is always kept, as the end of the picture; it goes with the next one if it is not one of those that
// are kept. When there are too many, every second one goes, and from then on half as many are kept.
void queue_history::add(uint64_t time, const fields &sample)
{
    if (samples_ > 0 && (samples_ - 1) % every_ != 0)
        moments_.pop_back();
    ++samples_;
    moment &now = moments_.emplace_back(moment{time, {}});
    for (const fields &queue : sample.at("queues"))
        if (!queue.at("counters").is_null())
            now.queues[queue.at("port").number<int32_t>()] = reading_of(queue, sample.at("delays"));
    if (moments_.size() <= most_moments)
        return;
    for (size_t kept = 0; kept <= most_moments / 2; ++kept)
        std::swap(moments_[kept], moments_[2 * kept]);
    moments_.resize(most_moments / 2 + 1);
    every_ *= 2;
}

queue_history::reading queue_history::reading_of(const fields &queue, const fields &delays)
{
    const fields &counters = queue.at("counters");
    reading read = {.name = queue.at("name").text(),
                    .octets_sent = counters.at("octets_tx").number<uint64_t>(),
                    .dropped = counters.at("pkts_dropped").number<uint64_t>()};
    for (const fields &delay : delays)
        if (delay.at("port") == queue.at("port")) {
            read.waiting = delay.at("waiting_octets").number<uint64_t>();
            read.delays = delay.at("frames").number<uint64_t>();
            read.delay_sum = delay.at("sum").number<uint64_t>();
        }
    return read;
}

plotted_step queue_history::step_between(const reading &before, const reading &now)
{
    plotted_step step = {.octets_sent = grown(before.octets_sent, now.octets_sent),
                         .backlog = now.waiting,
                         .dropped = grown(before.dropped, now.dropped)};
    if (const uint64_t left = grown(before.delays, now.delays))
        step.delay = grown(before.delay_sum, now.delay_sum) / left;
    return step;
}

// A queue may come and go: only two neighbouring samples that both have it make a step.
std::vector<plotted_queue> queue_history::steps() const
{
    std::map<int32_t, plotted_queue> queues;
    for (size_t number = 1; number < moments_.size(); ++number)
        for (const auto &[port, now] : moments_[number].queues) {
            const auto before = moments_[number - 1].queues.find(port);
            if (before == moments_[number - 1].queues.end())
                continue;
            plotted_step step = step_between(before->second, now);
            step.begin = moments_[number - 1].time;
            step.end = moments_[number].time;
            queues[port].name = now.name;
            queues[port].steps.push_back(step);
        }
    std::vector<plotted_queue> plotted;
    plotted.reserve(queues.size());
    for (auto &[port, queue] : queues)
        plotted.push_back(std::move(queue));
    return plotted;
}

} // namespace kelctl
