// What the tables of a node file stand for: the row of the table of commands that each asks for, and which key is which of
// its arguments. What a key may be, whether it has to be there and what counts without it, the argument says.
#pragma once

#include "kelctl/language/command.h"

#include <span>
#include <string>
#include <string_view>

namespace kelctl
{

struct node_key {
    std::string_view name;      // "dst_mac"; "shaping.rate" of a table in the table
    std::string_view argument;  // of the row
    std::string_view each = {}; // the row that every element of an array asks for; empty: the table's, once
};

// How often a table is in a file.
enum class occurrence { once, at_most_once, any };

struct node_table {
    std::string_view name;
    std::string_view row;
    std::string_view help;
    std::span<const node_key> keys;
    occurrence times = occurrence::any;
    std::string_view before = {};                 // the command that comes once before all those of these tables
    std::span<const std::string_view> after = {}; // those behind them

    // "[[path]]"
    std::string heading() const;

    // Null: it has none such.
    const node_key *find(std::string_view key) const;

    // The key of the row's argument, or of that of its `each`.
    std::string_view key_of(std::string_view argument) const;
};

// In the order of a node's bring-up.
std::span<const node_table> node_tables();

} // namespace kelctl
