// When a progress line is due.
#include "kelctl/progress.h"

#include "kelctl/terminal.h"

#include <fmt/format.h>

#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t shortest_shown = 200;
constexpr size_t lines = 10;
constexpr size_t redraws = 100;

// Whether `done` is where another of so many parts is complete.
bool completes_part(size_t done, size_t total, size_t parts)
{
    return done * parts / total != (done - 1) * parts / total;
}

} // namespace

progress::progress(std::string what, size_t total, std::FILE *stream, bool redrawn)
    : what_(std::move(what)), total_(total), stream_(stream), redrawn_(redrawn)
{
}

void progress::show(size_t done)
{
    if (total_ < shortest_shown || !completes_part(done, total_, redrawn_ ? redraws : lines))
        return;
    const std::string text = fmt::format("{} {}/{}", what_, done, total_);
    write(stream_, redrawn_ ? "\r" + text : text + "\n");
    in_line_ = redrawn_;
    if (done == total_)
        leave_line();
}

void progress::leave_line()
{
    if (std::exchange(in_line_, false))
        write(stream_, "\n");
}

} // namespace kelctl
