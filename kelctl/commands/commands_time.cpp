// Rows of virtual time: advance and show it. Streams of traffic, which pass with it, are in commands_traffic.cpp.
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/input/interruption.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"
#include "kelctl/values/quantity_messages.h"
#include "terminal/progress.h"
#include "terminal/terminal.h"

#include <fmt/core.h>

#include <chrono>
#include <utility>

namespace kelctl
{
namespace
{

// In pieces, so that a long time can be interrupted and a terminal can show the progress, from one second on. Pieces
// end at the same nanosecond however many there are, so the progress changes nothing of the traffic.
result advance(const invocation &asked, session &session)
{
    constexpr uint64_t pieces = 1000;
    constexpr std::chrono::seconds unseen(1);
    const auto begin = std::chrono::steady_clock::now();
    const auto time = asked.given.number<uint64_t>("TIME");
    const bool seen = terminal::is_terminal(stderr) && !session.json() && !session.tracing() && !session.quiet();
    terminal::progress shown("advancing time", pieces, stderr, seen);
    uint64_t passed = 0;
    for (uint64_t piece = 1; piece <= pieces && !interrupted(); ++piece) {
        const uint64_t end = time * piece / pieces;
        session.traffic.pass(end - std::exchange(passed, end));
        if (std::chrono::steady_clock::now() - begin > unseen)
            shown.show(piece);
    }
    shown.leave_line();
    if (passed < time)
        return refused(fmt::format("interrupted after {} of {}", quantity_text(passed, duration_units),
                                   quantity_text(time, duration_units)));
    return {};
}

result show_time(const invocation &, session &)
{
    result done;
    done.shown = {{"nanoseconds", virtual_time()}};
    done.text = quantity_text(virtual_time(), duration_units);
    return done;
}

} // namespace

std::vector<command> time_commands()
{
    return {
        {.name = "time advance",
         .variants = {{.run = advance}},
         .help = "Advance virtual time and play the streams of traffic",
         .details = "In a script and in the shell, Ctrl-C interrupts it.",
         .arguments = {{.name = "TIME", .kind = kind::duration(duration_range), .help = "how long, such as 250ms"}},
         .example = "time advance 250ms",
         .needs_accelerator = true},
        {.name = "time show",
         .variants = {{.run = show_time}},
         .help = "Show virtual time since the node was switched on",
         .needs_accelerator = true},
    };
}

} // namespace kelctl
