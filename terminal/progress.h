// The progress of a long job as one line that a terminal redraws: "adding paths 4200/10000".
//
//     progress shown("adding paths", total, stderr, is_terminal(stderr));
//     for (size_t done = 1; done <= total; ++done)
//         shown.show(done);
//
// Several lines that are redrawn are redrawn_block.h.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace terminal
{

class progress
{
public:
    // `redrawn`: the stream is a terminal, and nothing else writes to it before the job ends. Without it, and for fewer
    // than 200 steps, nothing is shown. Does not own the stream.
    progress(std::string what, size_t total, std::FILE *stream, bool redrawn);

    // So many steps are done. Call it once for every number from 1 to the total: it draws once for each hundredth.
    void show(size_t done);

    // Ends the line, if there is one, so that other output starts on a new line. For a job that ends early.
    void leave_line();

private:
    std::string what_;
    size_t total_; // 0 where nothing is shown
    std::FILE *stream_;
    bool in_line_ = false;
};

} // namespace terminal
