// The queues of a node over time, from samples (node/sample.h), to be drawn.
//
//     history.add(0, sample);
//     history.add(200'000'000, next_sample);
//     draw_plot("queues.svg", queue_plot(history.steps(), {"time", "mean delay"}));
#pragma once

#include "kelctl/results/result.h"
#include "kelctl/views/queue_plot.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

// Room does not grow with time: a view may run for days.
class queue_history
{
public:
    // `time`: nanoseconds since the first sample. However many there are, a few hundred are kept, equally far apart.
    void add(uint64_t time, const fields &sample);

    // From one sample to the next: what left, its mean delay, what was dropped; and the backlog at the end.
    std::vector<plotted_queue> steps() const;

private:
    struct reading {
        std::string name;
        uint64_t octets_sent = 0;
        uint64_t dropped = 0;
        std::optional<uint64_t> waiting = {}; // octets
        uint64_t delays = 0;                  // how many
        uint64_t delay_sum = 0;
    };
    struct moment {
        uint64_t time;
        std::map<int32_t, reading> queues; // by their ports
    };

    static reading reading_of(const fields &queue, const fields &delays);
    static plotted_step step_between(const reading &before, const reading &now);

    std::vector<moment> moments_; // the last one is that of the last sample
    uint64_t samples_ = 0;
    uint64_t every_ = 1; // so many samples are between two that are kept
};

} // namespace kelctl
