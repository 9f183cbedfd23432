// Writes an array of complete events, one by one, because a recording can have millions. Times are in microseconds,
// with the nanoseconds as decimals.
#include "kel-trace/views/flame_chart.h"

#include "notation/json.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kel_trace
{
namespace
{

// Viewers know no hosts: the processes of another host get other numbers.
constexpr int64_t host_step = int64_t{1} << 32;

std::string microseconds(int64_t nanoseconds)
{
    return fmt::format("{}.{:03}", nanoseconds / 1000, nanoseconds % 1000);
}

// What is no regular file is written as it is: a device, a pipe, a link to whatever.
bool is_replaced(const std::string &path)
{
    struct stat there = {};
    return lstat(path.c_str(), &there) != 0 || S_ISREG(there.st_mode);
}

} // namespace

flame_chart::flame_chart(const std::string &path)
    : path_(path), written_(is_replaced(path) ? fmt::format("{}.{}", path, getpid()) : path),
      file_(std::fopen(written_.c_str(), "we"))
{
    if (!file_)
        throw std::system_error(errno, std::generic_category(), path_);
    std::fputs("[", file_);
}

// Without finish() the file beside is removed: half a chart would open as if it were whole.
flame_chart::~flame_chart()
{
    if (file_)
        std::fclose(file_);
    if (file_ && written_ != path_)
        std::remove(written_.c_str());
}

void flame_chart::add(const span &one, int64_t origin)
{
    const std::string line =
        fmt::format("{}\n{{\"name\":{},\"cat\":\"{}\",\"ph\":\"X\",\"ts\":{},\"dur\":{},\"pid\":{},\"tid\":{},"
                    "\"args\":{{\"reported\":{}}}}}",
                    first_ ? "" : ",", notation::to_json(one.name), one.is_call ? "closed call" : "operation",
                    microseconds(one.begin - origin), microseconds(std::max<int64_t>(one.end - one.begin, 0)),
                    one.of.process + one.of.host * host_step, one.of.thread, one.reported);
    std::fwrite(line.data(), 1, line.size(), file_);
    first_ = false;
}

void flame_chart::finish()
{
    std::fputs("\n]\n", file_);
    const bool sound = std::ferror(file_) == 0;
    const bool flushed = std::fflush(file_) == 0;
    if (!sound || !flushed || (written_ != path_ && std::rename(written_.c_str(), path_.c_str()) != 0))
        throw std::system_error(errno, std::generic_category(), path_);
    std::fclose(file_);
    file_ = nullptr;
}

} // namespace kel_trace
