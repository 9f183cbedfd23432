// Reads a node file into the commands that a person would type to bring the same node up. The mapping of tables and
// keys to commands is node_keys.h; rules across several tables are node_rules.h.
//
//     const node_file_read read = read_node_file("node.toml", table);
//     for (const problem &one : read.problems)
//         report(one.at.line, one.at.column, one.message);
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
struct positioned_line {
    struct positioned_key {
        const node_key *key;
        position at; // of its value
    };

    invocation asked;
    const node_table *table; // null: not in the file, but added for every node, such as "ebcom start"
    position at;             // of the table
    std::vector<positioned_key> keys = {};
    bool sound = true; // every required key is there, and each value is valid by itself

    // The position of an argument's value; of the table when the argument is not in the file.
    position at_of(std::string_view argument) const;

    // A problem with one of its arguments: at its value, with the key's name in front.
    problem wrong(std::string_view argument, std::string_view what) const;
};

// Lines in the order of a bring-up: own MP id, EBCOM service, paths, PCEP service, PCEPs, groups, their members,
// traffic. With problems the lines must not be carried out. Unsound lines keep the arguments that could be read, so
// that the rules do not report, say, a group's member as unknown because its PCEP has a wrong VLAN.
struct node_file_read {
    std::vector<positioned_line> lines;
    problem_list problems;
    problem_list warnings = {}; // what is allowed, and hardly meant; complete only where there are no problems
};

// `rows` must outlive what is returned. A file that cannot be read is a problem.
node_file_read read_node_file(const std::string &file, const command_table &rows);
node_file_read parse_node_file(std::string_view text, const command_table &rows);

} // namespace kelctl
