// The live view of what the session made. The view itself is jobs/watch.h, and what it shows node/rates.h.
#include "kelctl/commands/commands.h"
#include "kelctl/commands/watch_arguments.h"
#include "kelctl/jobs/watch.h"
#include "kelctl/node/rates.h"
#include "kelctl/values/limits.h"

namespace kelctl
{
namespace
{

constexpr std::string_view watch_details =
    R"(Rates are averages since the previous reading. A terminal shows readings in
place; any other output gets one block per reading, or with --json one line. Ends
on Ctrl-C, or when the reader of standard output closes it.

On the software accelerator, virtual time passes as fast as real time, unless
--step or --interval change it, and the added streams of traffic are played. On
another platform, rates are over real time, and values that only the software
accelerator counts are shown as unknown.

With only --queue or --pcep, reads only that queue or PCEP. With --node, watches
the node of another process, whose virtual time passes.)";

// With 0, samples follow each other as fast as they can be taken.
constexpr range interval_range = {0, 3'600'000'000'000, "0 s to 3600 s"};

} // namespace

std::vector<argument> watch_arguments()
{
    return {{.name = "--queue", .kind = kind::ebcom_port(), .help = "show the queue of this port", .required = false},
            {.name = "--pcep", .kind = kind::pcep_id(), .help = "show this PCEP", .required = false},
            {.name = "--sort",
             .kind = kind::choice(rate_keys()),
             .help = "largest first (default: order of creation)",
             .required = false},
            {.name = "--interval",
             .kind = kind::duration(interval_range),
             .help = "time between two readings (default 200ms)",
             .required = false},
            {.name = "--step",
             .kind = kind::duration(period_range),
             .help = "virtual time that passes per update (default 200ms)",
             .required = false},
            {.name = "--for",
             .kind = kind::duration(period_range),
             .help = "stop after this much time, virtual on the software accelerator",
             .required = false},
            {.name = "--plot",
             .kind = kind::new_file(),
             .help = "at the end, plot rate, backlog and delay of the queues to this file (SVG); requires gnuplot",
             .required = false}};
}

std::vector<command> watch_commands()
{
    return {
        {.name = "watch",
         .variants = {{.run = watch_session}},
         .help = "Show rates, drops and backlogs as they change",
         .details = watch_details,
         .arguments = watch_arguments(),
         .example = "watch --sort rate --for 1s",
         .carried_out = executor::asker},
    };
}

} // namespace kelctl
