// The tables and keys of a node file, and the order in which a node comes up. A table is equivalent to a command, a key
// to one of the command's arguments:
//
//     [[path]]                              ebcom path add 02:00:02:02:00:01 --port RLU1P
//     dst_mac = "02:00:02:02:00:01"
//     port = "RLU1P"
//
// To add a key, add an argument to the command's row (commands/commands_*.cpp) and its key to the table in
// node_keys.cpp. Range, unit, default and whether it is required come from the argument.
#pragma once

#include "kelctl/language/command.h"

#include <span>
#include <string>
#include <string_view>

namespace kelctl
{

// A key, and the argument that its value becomes.
struct node_key {
    std::string_view name;      // "dst_mac"; "shaping.rate" for a key of a table in the table
    std::string_view argument;  // of the row: "MAC", "--rate"
    std::string_view each = {}; // of an array: the row that each element is; empty: no array of commands
};

// How often a table may be in a file.
enum class occurrence { once, at_most_once, any };

// A table, and the command that it is equivalent to. All texts live as long as the program.
struct node_table {
    std::string_view name; // "path"
    std::string_view row;  // the command that each table of this name is
    std::string_view help; // for the manual page
    std::span<const node_key> keys;
    occurrence times = occurrence::any;
    std::string_view before = {};                 // a command that comes once, before those of these tables
    std::span<const std::string_view> after = {}; // commands that come once, after them

    // "[[path]]"
    std::string heading() const;

    // Null when the table has no such key.
    const node_key *find(std::string_view key) const;

    // The key of an argument; the argument's own name if it has none.
    std::string_view key_of(std::string_view argument) const;
};

// In the order of a bring-up: `up` carries the commands of the tables out in this order, and takes them down in
// reverse.
std::span<const node_table> node_tables();

} // namespace kelctl
