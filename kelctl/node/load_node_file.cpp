// From file to invocations, with the platform's limits.
#include "kelctl/node/load_node_file.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/nodefile/node_rules.h"
#include "kelctl/values/mp_id.h"

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

// With problems there are lines all the same; loaded_lines says that they are not to be used.
loaded_lines checked(node_file_read read, const std::string &file)
{
    check_rules(read, {.mp_id = own_mp_id(), .most_destinations = room_for_destinations()});
    loaded_lines loaded = {{}, errors_of(file, std::move(read.problems)), errors_of(file, std::move(read.warnings))};
    loaded.lines.reserve(read.lines.size());
    for (positioned_line &line : read.lines)
        loaded.lines.push_back(std::move(line.asked));
    return loaded;
}

} // namespace

std::optional<size_t> room_for_destinations()
{
    const auto limits = accelerator_limits();
    return limits ? std::optional(limits->at("paths").number<size_t>()) : std::nullopt;
}

loaded_lines load_node_file(const std::string &file, const command_table &rows)
{
    return checked(read_node_file(file, rows), file);
}

loaded_lines load_node_text(const std::string &name, std::string_view text, const command_table &rows)
{
    return checked(parse_node_file(text, rows), name);
}

node_size size_of(const std::vector<invocation> &lines)
{
    node_size size;
    for (const invocation &line : lines) {
        const std::string_view row = line.row->name;
        if (row == "ebcom path add")
            size.paths += line.given.has("--count") ? line.given.number<uint64_t>("--count") : 1;
        size.pceps += row == "pcep add";
        size.groups += row == "group add";
        size.streams += row == "traffic stream add";
    }
    return size;
}

// Problems of one position stay in the order in which they were found.
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
