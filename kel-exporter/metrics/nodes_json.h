// What is known of nodes, as the page reads it.
#pragma once

#include "kel-exporter/nodes/known_node.h"

#include <chrono>
#include <string>
#include <vector>

namespace kel_exporter
{

// "nodes": of each node `name`, `up`, `why` it is not, `file`, `age` of the state in seconds, and `state`: what the
// node answers to {"ask":"state"}, null before it has answered. "time": Unix time in seconds.
std::string nodes_json(const std::vector<known_node> &nodes, watch_clock::time_point now,
                       std::chrono::system_clock::time_point today);

} // namespace kel_exporter
