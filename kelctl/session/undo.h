// The stack of what this process has made and not undone: for each command that succeeded, the one that undoes it. Rows
// name the command that undoes them (`.undo`); jobs/take_down.h carries these out.
//
//     stack.note(add_path);       // pushes it, with the command that removes the path
//     stack.note(remove_path);    // of the same path: takes it off again
#pragma once

#include "kelctl/language/command.h"

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace kelctl
{

// The command that undoes this one, with the arguments that both have. None when its row names none.
std::optional<invocation> undo_of(const invocation &asked, const command_table &table);

// A command that was carried out, with the one that undoes it.
struct made_command {
    invocation asked;
    invocation undo;     // without a row: nothing undoes it
    bool failed = false; // the command failed, and may have left something
    uint64_t number = 0; // counts up: no other one of the stack had it
};

// A session's own. Looking up, pushing and removing take logarithms of its size.
class undo_stack
{
public:
    explicit undo_stack(const command_table &table) : table_(table)
    {
    }

    // Call it when a command succeeded. Pushes one that makes something; one that undoes another removes that one.
    void note(const invocation &asked);

    // Call it when a command failed that may have left what its undo removes.
    void note_failed(const invocation &asked);

    // The oldest first.
    const std::list<made_command> &all() const
    {
        return made_;
    }

    // What this command made, the oldest first: found without a look at all, by the undo that no other command has.
    std::vector<const made_command *> made_by(std::string_view row) const;

    // Takes the newest one off without undoing it. There is one.
    void drop_last();

    // Empties the stack without undoing anything: what was made stays on the node.
    std::list<made_command> take_all();

private:
    using entry = std::list<made_command>::iterator;
    using undone_by_one_row = std::multimap<arguments, entry>; // equal ones in the order of their making

    void push(made_command made);

    const command_table &table_;
    std::list<made_command> made_;
    uint64_t next_number_ = 0;
    std::map<const command *, undone_by_one_row> undone_by_;
};

} // namespace kelctl
