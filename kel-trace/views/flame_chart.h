// Operations and closed calls as a trace of Chromium's format, which its viewer and Perfetto's show as a flame chart.
#pragma once

#include "kel-trace/operations/statistics.h"

#include <cstdio>
#include <string>

namespace kel_trace
{

class flame_chart
{
public:
    // Throws std::system_error when the file cannot be written.
    explicit flame_chart(const std::string &path);
    ~flame_chart();
    flame_chart(const flame_chart &) = delete;
    flame_chart &operator=(const flame_chart &) = delete;

    // Times count from `origin`: of a number since 1970, viewers would lose the nanoseconds.
    void add(const span &one, int64_t origin);

    // Throws std::system_error when not all could be written.
    void finish();

private:
    std::string path_;
    std::FILE *file_;
    bool first_ = true;
};

} // namespace kel_trace
