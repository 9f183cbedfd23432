// How far a long job is: one line, drawn over and over on a terminal. Elsewhere nobody waits for it.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace kelctl
{

class progress
{
public:
    // Short jobs show nothing. `redrawn` tells that the stream is a terminal, which nothing else writes to meanwhile;
    // without it nothing is shown either.
    progress(std::string what, size_t total, std::FILE *stream, bool redrawn);

    // Call it for every number from 1 to the total.
    void show(size_t done);

    // Leaves the line that is being drawn over, if there is one. For a job that ends early.
    void leave_line();

private:
    std::string what_;
    size_t total_; // 0 where nothing is shown
    std::FILE *stream_;
    bool in_line_ = false;
};

} // namespace kelctl
