// The loop: let time pass, read the counters, show the difference.
#include "kelctl/jobs/watch.h"

#include "kelctl/input/interruption.h"
#include "kelctl/node/rates.h"
#include "kelctl/node/statistics.h"
#include "kelctl/session/fields_view.h"
#include "kelctl/terminal/redrawn_block.h"
#include "kelctl/terminal/terminal.h"
#include "kelctl/views/counter_tables.h"

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

void show_rates(const fields &rates, session &session, redrawn_block &block)
{
    if (session.json())
        session.stream({{"watch", rates}});
    else if (!session.quiet())
        block.draw(fields_text(rates_tables(rates), session.output_page()));
}

} // namespace

result watch(const watch_pace &pace, const port_knowledge &ports, session &session)
{
    redrawn_block block(stdout, is_terminal(stdout) && !session.tracing());
    uint64_t time = 0;
    result before = read_statistics(ports, session);
    while (before.failures.empty() && time < pace.end) {
        const uint64_t passed = session.traffic.pass(std::min(pace.step, pace.end - time));
        if (passed == 0)
            break;
        time += passed;
        result now = read_statistics(ports, session);
        if (now.failures.empty())
            show_rates(rates_between(before.shown, now.shown, passed, time), session, block);
        before = std::move(now);
        if (time < pace.end && unwanted_within(pace.interval))
            break;
    }
    block.leave();
    before.text = "";
    before.shown = fields{{"watched", {{"nanoseconds", time}}}};
    before.stage = "watch";
    return before;
}

} // namespace kelctl
