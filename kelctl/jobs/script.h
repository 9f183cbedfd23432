// Scripts: a command on each line. All lines are parsed before the first one is carried out, so that a misspelt last
// line does not leave a node half configured. Lines that are typed or come through a pipe are shell.h: they are carried
// out one by one.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/results/result.h"
#include "kelctl/values/problem.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct script {
    std::vector<invocation> lines; // without empty lines and comments
    problem_list problems;         // one for each line that is no command
};

// Lines count from 1. `table` must outlive the lines.
script parse_script(const command_table &table, std::string_view text);

// The lines of a file. One that cannot be read is an error, too.
loaded_lines script_in(const std::string &file, const command_table &table);

// The handler of `run`. Each line shows its own result; the last result counts the lines.
result run_script(const invocation &asked, session &session);

} // namespace kelctl
