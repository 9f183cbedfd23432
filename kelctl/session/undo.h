// The stack of what this process has made and not undone: for each command that succeeded, the one that undoes it. Rows
// name the command that undoes them (`.undo`); jobs/take_down.h carries these out.
#pragma once

#include "kelctl/language/command.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kelctl
{

// The command that undoes this one, with the arguments that both have. None when its row names none.
std::optional<invocation> undo_of(const invocation &asked, const command_table &table);

struct made_command {
    invocation asked;
    invocation undo;     // without a row: nothing undoes it
    bool failed = false; // the command failed, and may have left something
};

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
    const std::vector<made_command> &all() const
    {
        return made_;
    }

    void drop_last();

    // Empties the stack without undoing anything: what was made stays on the node.
    std::vector<made_command> take_all();

private:
    const command_table &table_;
    std::vector<made_command> made_;
};

} // namespace kelctl
