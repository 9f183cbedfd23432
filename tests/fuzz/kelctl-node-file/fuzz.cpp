// Any octets as a node file: read, checked against the rules, and what is sound made into the calls of a bring-up.
#include "kelctl/ebcom_steps.h"
#include "kelctl/node_file.h"
#include "kelctl/node_rules.h"
#include "kelctl/pcep_steps.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{

using namespace kelctl;

constexpr uint64_t enough_paths = 2'000; // a file may ask for many more, of which each is like the others

void check_places(const problem_list &problems, std::string_view text)
{
    const auto lines = static_cast<uint32_t>(std::ranges::count(text, '\n')) + 1;
    for (const problem &one : problems)
        if (one.message.empty() || one.at.line > lines)
            std::abort();
}

void make_texts(const std::vector<step> &steps)
{
    for (const step &one : steps)
        if (one.make.text().empty())
            std::abort();
}

void plan(const node_file &node)
{
    uint64_t paths = 0;
    for (const path_entry &entry : node.paths)
        paths += entry.count;
    if (paths > enough_paths)
        return;
    const std::vector<kel_ebcom_path_config> configurations = path_configurations(node);
    if (configurations.size() != paths)
        std::abort();
    make_texts(ebcom_steps(node.ebcom, configurations));
    make_texts(pcep_steps(node));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *octets, size_t count)
{
    const std::string_view text(reinterpret_cast<const char *>(octets), count);
    node_file_read read = parse_node_file(text);
    check_rules(read.node, {}, read.problems);
    check_places(read.problems, text);
    if (read.problems.empty())
        plan(read.node);
    return 0;
}
