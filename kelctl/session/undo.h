// What this process made and nobody has taken back: for each command that succeeded, the one that undoes it.
#pragma once

#include "kelctl/language/command.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace kelctl
{

// The command of the table that undoes this one, with those of its arguments that it takes. None when its row names none.
std::optional<invocation> undo_of(const invocation &asked, const command_table &table);

struct made_command {
    invocation asked;
    invocation undo;     // no row: it stays
    bool failed = false; // it may have left something all the same
};

class undo_stack
{
public:
    explicit undo_stack(const command_table &table) : table_(table)
    {
    }

    // The command succeeded. One that undoes another takes that one off. What it makes may have nothing that undoes it.
    void note(const invocation &asked);

    // It failed, and may have left something that its undo removes.
    void note_failed(const invocation &asked);

    // In the order of their making.
    const std::vector<made_command> &all() const
    {
        return made_;
    }

    void drop_last();

    // Nobody takes these down any more.
    std::vector<made_command> take_all();

private:
    const command_table &table_;
    std::vector<made_command> made_;
};

} // namespace kelctl
