// Reading and checking.
#include "kelctl/node/load_node_file.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/nodefile/node_rules.h"
#include "kelctl/values/mp_id.h"
#include "notation/json.h"

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

// The platform has a path for each destination.
std::optional<size_t> room_for_destinations()
{
    const auto limits = accelerator_limits();
    return limits ? std::optional(notation::read_json(*limits).at("paths").number<size_t>()) : std::nullopt;
}

} // namespace

loaded_node_file load_node_file(const std::string &file)
{
    node_file_read read = read_node_file(file);
    check_rules(read.node, {.mp_id = own_mp_id(), .most_destinations = room_for_destinations()}, read.problems);
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
