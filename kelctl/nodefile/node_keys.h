// The tables and keys of node files: what the reader accepts, and what the manual page tells.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace kelctl
{

struct node_key {
    std::string_view name;
    std::string_view value; // what it may be
    std::string_view help;
    std::string_view otherwise = {}; // what counts when it is left out; empty: it may not be
    std::string_view instead = {};   // the key that has to be there when this one is not, and must not be when it is
};

struct node_table {
    std::string_view name;    // "path.shaping" of a table in a table
    std::string_view heading; // as it is written: "[[path]]"
    std::string_view help;
    std::span<const node_key> keys;
};

// In the order of a node's bring-up.
std::span<const node_table> node_tables();

// The keys of a table; of the whole file without a name: its tables.
std::vector<std::string_view> node_keys_of(std::string_view table);

} // namespace kelctl
