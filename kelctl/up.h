// `kelctl up`: reads a node file, brings the node up, shows what stands, takes it down.
#pragma once

#include <string>

namespace kelctl
{

struct up_options {
    std::string file;
    bool trace = false; // print the library's trace records as they are fired
};

// The program's exit status.
int up(const up_options &options);

} // namespace kelctl
