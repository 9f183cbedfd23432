// Operations and closed calls as a trace of Chromium's format, which its viewer and Perfetto's show as a flame chart.
//
//     flame_chart chart("chart.json");
//     chart.add(span, found.first);
//     chart.finish();
#pragma once

#include "kel-trace/operations/statistics.h"

#include <cstdio>
#include <string>

namespace kel_trace
{

class flame_chart
{
public:
    // Writes a file beside it, unless it is a device, a pipe or a link. Throws std::system_error when that cannot be
    // done.
    explicit flame_chart(const std::string &path);
    ~flame_chart();
    flame_chart(const flame_chart &) = delete;
    flame_chart &operator=(const flame_chart &) = delete;

    // Times count from `origin`: of a number since 1970, viewers would lose the nanoseconds.
    void add(const span &one, int64_t origin);

    // Puts the new file in the place of the old one. Throws std::system_error when not all could be written: the old
    // file is unchanged then, as it is without this.
    void finish();

private:
    std::string path_;
    std::string written_; // the file beside it, or itself
    std::FILE *file_;
    bool first_ = true;
};

} // namespace kel_trace
