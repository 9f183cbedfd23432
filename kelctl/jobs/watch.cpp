// From one reading of the counters to the next.
#include "kelctl/jobs/watch.h"

#include "kelctl/input/interruption.h"
#include "kelctl/node/rates.h"
#include "kelctl/node/statistics.h"
#include "kelctl/terminal/redrawn_block.h"
#include "kelctl/terminal/terminal.h"
#include "kelctl/views/rates_view.h"

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

void show_rates(const rates &shown, uint64_t time, session &session, redrawn_block &block)
{
    if (session.json())
        session.stream({{"watch", rates_fields(shown, time)}});
    else
        block.draw(rates_view(shown, time, painter_for(stdout)));
}

} // namespace

result watch(const watch_pace &pace, const port_knowledge &ports, session &session)
{
    const auto read = [&] { return read_statistics(ports, session, counter_text::json); };
    redrawn_block block(stdout, is_terminal(stdout) && !session.tracing());
    uint64_t time = 0;
    statistics before = read();
    while (before.failures.empty() && time < pace.end) {
        const uint64_t passed = session.traffic.pass(std::min(pace.step, pace.end - time));
        if (passed == 0)
            break;
        time += passed;
        statistics now = read();
        if (now.failures.empty())
            show_rates(rates_between(before, now, passed), time, session, block);
        before = std::move(now);
        if (time < pace.end && unwanted_within(pace.interval))
            break;
    }
    block.leave();
    result done;
    done.text = "";
    done.shown = {{"watched", {{"nanoseconds", time}}}};
    done.stage = "watch";
    done.failures = std::move(before.failures);
    done.status = done.failures.empty() ? exit_done : exit_operation_failed;
    return done;
}

} // namespace kelctl
