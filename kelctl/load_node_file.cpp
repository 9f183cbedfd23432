// Reading and checking.
#include "kelctl/load_node_file.h"

#include "kelctl/node_rules.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kelctl
{

loaded_node_file load_node_file(const std::string &file)
{
    node_file_read read = read_node_file(file);
    if (read.node.mpid)
        setenv("MPID", std::to_string(*read.node.mpid).c_str(), 1);
    check_rules(read.node, read.problems);
    if (!read.problems.empty())
        return {nullptr, errors_of(file, std::move(read.problems))};
    return {std::make_unique<node_file>(std::move(read.node)), {}};
}

std::vector<input_error> errors_of(const std::string &file, problem_list problems)
{
    std::stable_sort(problems.begin(), problems.end(), [](const problem &a, const problem &b) { return a.at < b.at; });
    std::vector<input_error> errors;
    errors.reserve(problems.size());
    for (problem &one : problems)
        errors.push_back({std::move(one.message), file, one.at});
    return errors;
}

} // namespace kelctl
