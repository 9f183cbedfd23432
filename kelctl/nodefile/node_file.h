// The node file, read: the commands that a person would type to bring the same node up. What several of them must satisfy
// together is node_rules.h.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/nodefile/node_keys.h"
#include "kelctl/values/problem.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// A command, and where in the file each of its arguments is.
struct placed_line {
    struct placed_key {
        const node_key *key;
        position at; // of its value
    };

    invocation asked;
    const node_table *table; // null: it is not written, but belongs to every node
    position at;             // of the table
    std::vector<placed_key> keys = {};
    bool sound = true; // all that has to be there is, and right one by one

    // Where an argument is; the table where it is not written.
    position at_of(std::string_view argument) const;

    // What is wrong with one of its arguments, at its place.
    problem wrong(std::string_view argument, std::string_view what) const;
};

// Lines in the order of a bring-up: own MP id, EBCOM service, paths, PCEP service, PCEPs, groups, their members, traffic.
// Unusable when there are problems; then lines that are not sound have those arguments that could be read, because others
// may rightly name them.
struct node_file_read {
    std::vector<placed_line> lines;
    problem_list problems;
};

// `rows` has to outlive what is read.
node_file_read read_node_file(const std::string &file, const command_table &rows);
node_file_read parse_node_file(std::string_view text, const command_table &rows);

} // namespace kelctl
