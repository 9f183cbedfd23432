// Scripts: commands line by line, checked as a whole before the first one is carried out.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/session/result.h"
#include "kelctl/values/problem.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct script {
    std::vector<invocation> lines; // without empty ones and comments
    problem_list problems;         // of all lines that are none of the above
};

script parse_script(const command_table &table, std::string_view text);

// The lines of a file. One that cannot be read is an error, too.
loaded_lines script_in(const std::string &file, const command_table &table);

// The handler of `run`.
result run_script(const invocation &asked, session &session);

} // namespace kelctl
