/*
 * node_picture.cpp - brings up the node of a node file and prints its picture in Graphviz' language.
 *
 *     node_picture examples/node.toml
 */
#include "kelctl/bring_up.h"
#include "kelctl/ebcom_steps.h"
#include "kelctl/node_file.h"
#include "kelctl/pcep_steps.h"
#include "softnode/softnode.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

using namespace kelctl;

namespace
{

constexpr uint32_t generous = 60'000; // milliseconds

std::vector<step> steps_of(const node_file &file, const std::vector<kel_ebcom_path_config> &paths)
{
    std::vector<step> steps = ebcom_steps(file.ebcom, paths);
    std::ranges::move(pcep_steps(file), std::back_inserter(steps));
    return steps;
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 2)
        return EXIT_FAILURE;
    const node_file_read read = read_node_file(arguments[1]);
    if (!read.problems.empty())
        return EXIT_FAILURE;
    setenv("MPID", std::to_string(read.node.mpid.value_or(0)).c_str(), 1);

    trace_log log(nullptr);
    const auto paths = path_configurations(read.node);
    bring_up node(steps_of(read.node, paths), log);
    const bool stands = !node.up([](size_t) {});
    if (!stands || softnode_timing_settle(generous) != 1)
        return EXIT_FAILURE;
    const std::unique_ptr<char, void (*)(void *)> picture(softnode_graph_dot(), std::free);
    std::fputs(picture.get(), stdout);
    return EXIT_SUCCESS;
}
