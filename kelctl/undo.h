// What a row of the table says undoes it: the commands that take down what others made.
#pragma once

#include "kelctl/command.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kelctl
{

// The command of the table that undoes this one, with those of its arguments that it takes. None when its row names none.
std::optional<invocation> undo_of(const invocation &asked, const command_table &table);

struct made_command {
    uint32_t line; // of the script
    invocation undo;
};

// Commands that succeeded and are not undone yet.
class standing_commands
{
public:
    explicit standing_commands(const command_table &table) : table_(table)
    {
    }

    // One that succeeded. When it undoes an earlier one, that one stands no more.
    void note(uint32_t line, const invocation &asked);

    // Takes the last one made; none when none is left.
    std::optional<made_command> take_last();

private:
    const command_table &table_;
    std::vector<made_command> standing_;
};

} // namespace kelctl
