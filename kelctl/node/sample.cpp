// The clocks, and the counters behind them.
#include "kelctl/node/sample.h"

#include "kelctl/accelerator/software_accelerator.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kelctl
{

// The clock is read before the counters: reading many of them takes a while, and the first ones belong to this instant.
result take_sample(const fields &held, const port_knowledge &ports, const counted &which, session &session)
{
    const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
    result taken = read_counters(held, ports, which, session);
    fields sample = {{"real", now.count()},
                     {"virtual", on_software_accelerator() ? fields(virtual_time()) : fields(nullptr)}};
    for (auto &[name, value] : taken.shown.members())
        sample[name] = std::move(value);
    taken.shown = std::move(sample);
    return taken;
}

uint64_t time_between(const fields &before, const fields &now, time_base base)
{
    const char *name = base == time_base::real_time ? "real" : "virtual";
    const auto begin = before.at(name).number<uint64_t>();
    return std::max(now.at(name).number<uint64_t>(), begin) - begin;
}

} // namespace kelctl
