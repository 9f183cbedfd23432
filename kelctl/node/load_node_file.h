// A node file, checked in all ways before anything is done with it.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/session/result.h"
#include "kelctl/values/problem.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelctl
{

// The commands that a file stands for, be it a node file or a script.
struct loaded_lines {
    std::vector<invocation> lines;   // sound where there are no errors
    std::vector<input_error> errors; // in the order of their places
};

// The lines bring the node up. Changes nothing in the process: any number of files can be looked at. The table of commands has to outlive the lines.
loaded_lines load_node_file(const std::string &file, const command_table &rows);

// What the lines of a node make, without carrying them out.
struct node_size {
    uint64_t paths = 0;
    uint64_t pceps = 0;
    uint64_t groups = 0;
    uint64_t streams = 0; // of traffic
};
node_size size_of(const std::vector<invocation> &lines);

// The problems of a file as errors, in the order of their places.
std::vector<input_error> errors_of(const std::string &file, problem_list problems);

} // namespace kelctl
