/*
 * node_picture.cpp - brings up the node of a node file and prints its picture in Graphviz' language.
 *
 *     node_picture examples/node.toml
 */
#include "kelctl/commands/commands.h"
#include "kelctl/node/load_node_file.h"
#include "kelctl/results/result.h"
#include "kelctl/session/session.h"
#include "softnode/softnode.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace kelctl;

namespace
{

constexpr uint32_t generous = 60'000; // milliseconds

} // namespace

int main(int count, char **arguments)
{
    if (count != 2)
        return EXIT_FAILURE;
    const loaded_lines node = load_node_file(arguments[1], commands());
    if (!node.errors.empty())
        return EXIT_FAILURE;
    session here(commands(), source::script, {.json = true});
    const auto succeeds = [&](const invocation &line) { return here.perform(line).status == exit_done; };
    if (!std::ranges::all_of(node.lines, succeeds) || softnode_timing_settle(generous) != 1)
        return EXIT_FAILURE;
    const std::unique_ptr<char, void (*)(void *)> picture(softnode_graph_dot(), std::free);
    std::fputs(picture.get(), stdout);
    return EXIT_SUCCESS;
}
