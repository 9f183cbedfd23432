// The metrics: what each is called and means, and where its values are in what is known of a node. docs/metrics.md
// lists them; a test compares the two. To add one, add a row in families.cpp.
#pragma once

#include "kel-exporter/nodes/known_node.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kel_exporter
{

enum class metric_type : uint8_t { counter, gauge, info };

using label = std::pair<std::string_view, std::string>;

// Takes a value with its labels, which begin with the node's.
using sample_sink = std::function<void(const std::vector<label> &labels, std::string value)>;

// A metric and where its values come from. All texts live as long as the program.
struct family {
    std::string_view name; // without the "_total" of a counter and the "_info" of an info
    metric_type type;
    std::string_view unit; // that the name ends with; empty: none
    std::string_view help;
    void (*read)(const family &of, const known_node &node, watch_clock::time_point now, const sample_sink &add);
    std::string_view source = {}; // the member of the object that is read
    uint64_t scale = 1;           // of the unit
};

// In the order in which they are written.
std::span<const family> families();

} // namespace kel_exporter
