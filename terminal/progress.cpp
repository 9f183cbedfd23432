// When a progress line is due.
#include "terminal/progress.h"

#include "terminal/terminal.h"

#include <fmt/core.h>

#include <utility>

namespace terminal
{
namespace
{

constexpr size_t shortest_shown = 200; // steps; fewer are done before anyone can read the line
constexpr size_t redraws = 100;        // over the whole job: a draw for each step would slow it down

// Whether this step completes a hundredth of the job. The last one does, so the line ends with the total.
bool completes_part(size_t done, size_t total)
{
    return done * redraws / total != (done - 1) * redraws / total;
}

} // namespace

progress::progress(std::string what, size_t total, std::FILE *stream, bool redrawn)
    : what_(std::move(what)), total_(redrawn ? total : 0), stream_(stream)
{
}

void progress::show(size_t done)
{
    if (total_ < shortest_shown || !completes_part(done, total_))
        return;
    write(stream_, fmt::format("\r{} {}/{}", what_, done, total_));
    in_line_ = true;
    if (done == total_)
        leave_line();
}

void progress::leave_line()
{
    if (std::exchange(in_line_, false))
        write(stream_, "\n");
}

} // namespace terminal
