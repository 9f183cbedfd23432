// A node file, checked in all ways before anything is done with it.
#pragma once

#include "kelctl/nodefile/node_file.h"
#include "kelctl/session/result.h"

#include <memory>
#include <string>
#include <vector>

namespace kelctl
{

struct loaded_node_file {
    std::unique_ptr<node_file> node; // whole and sound; null when there are errors
    std::vector<input_error> errors; // in the order of their places
};

// Changes nothing in the process: any number of files can be looked at.
loaded_node_file load_node_file(const std::string &file);

// The problems of a file as errors, in the order of their places.
std::vector<input_error> errors_of(const std::string &file, problem_list problems);

} // namespace kelctl
