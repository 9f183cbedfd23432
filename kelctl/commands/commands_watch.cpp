// The live view of what the session made.
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
    R"(Rates are those of the time since the last reading. On a terminal readings are
drawn over each other; elsewhere each has a block of its own, or with --json a
line. It ends with Ctrl-C, or when the reader of standard output goes away.

The software accelerator's virtual time passes meanwhile, with the streams of
traffic that were added, as fast as real time unless --step or --interval say
otherwise. On another platform rates are over real time, and what only the
software accelerator counts is not known.

With --queue or --pcep alone only that queue or PCEP is read.)";

constexpr range interval_range = {0, 3'600'000'000'000, "0 s to 3600 s"};

} // namespace

std::vector<argument> watch_arguments()
{
    return {{.name = "--queue", .kind = kind::ebcom_port(), .help = "this port's queue", .required = false},
            {.name = "--pcep", .kind = kind::pcep_id(), .help = "this PCEP", .required = false},
            {.name = "--sort",
             .kind = kind::choice(rate_keys()),
             .help = "largest first; in the order of creation unless given",
             .required = false},
            {.name = "--interval",
             .kind = kind::duration(interval_range),
             .help = "from one reading to the next; 200ms unless given",
             .required = false},
            {.name = "--step",
             .kind = kind::duration(period_range),
             .help = "virtual time that passes between; 200ms unless given",
             .required = false},
            {.name = "--for",
             .kind = kind::duration(period_range),
             .help = "end after so much time, virtual where it passes",
             .required = false},
            {.name = "--plot",
             .kind = kind::file(),
             .help = "at the end, draw rate, backlog and delay of the queues there (SVG); needs gnuplot",
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
         .example = "watch --sort rate"},
    };
}

} // namespace kelctl
