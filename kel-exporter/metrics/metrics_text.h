// What is known of nodes, as Prometheus reads it.
//
//     # HELP kel_node_up Whether the node answers: 1 or 0.
//     # TYPE kel_node_up gauge
//     kel_node_up{node="edge"} 1
#pragma once

#include "kel-exporter/metrics/families.h"
#include "kel-exporter/nodes/known_node.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kel_exporter
{

enum class text_format : uint8_t { classic, open_metrics }; // version 0.0.4, version 1.0.0

// For the header Content-Type.
std::string_view media_type(text_format format);

// Values of a node that is not up are left out: they are what was, not what is.
std::string metrics_text(text_format format, const std::vector<known_node> &nodes, watch_clock::time_point now);

} // namespace kel_exporter
