// The members that the page reads; the state goes through as the node answered it.
#include "kel-exporter/metrics/nodes_json.h"

#include "notation/json.h"

namespace kel_exporter
{
namespace
{

using notation::document;

double seconds(std::chrono::nanoseconds time)
{
    return std::chrono::duration<double>(time).count();
}

} // namespace

std::string nodes_json(const std::vector<known_node> &nodes, watch_clock::time_point now,
                       std::chrono::system_clock::time_point today)
{
    document all = document::array();
    for (const known_node &node : nodes)
        all.push_back({{"name", node.name},
                       {"up", node.up},
                       {"why", node.up ? document() : document(node.why)},
                       {"file", node.file},
                       {"age", node.state ? document(seconds(now - node.read)) : document()},
                       {"state", node.state ? *node.state : document()}});
    return notation::to_json({{"time", seconds(today.time_since_epoch())}, {"nodes", all}}) + "\n";
}

} // namespace kel_exporter
