// The grammar of a line, shared by the parser and completion: what each word is, before any value is read.
//
//     ebcom path add 02:00:02:02:00:01 --port RLU1P --burst=4096
//     name           positional        option value option with value
//
// "expect CODE" may come before a command, where the table has a row of that name.
// Splitting a line into words is command_line.h, reading values argument_kind.h.
#pragma once

#include "kelctl/language/command.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

// A word as the line has it, without its quotes.
struct word {
    std::string text;
    // The columns of its first character and after its last one, counted from 1 in characters; 0: it is from no line,
    // but an argument of the program.
    uint32_t column = 0;
    uint32_t end = 0;
};

// An option with its value, or a positional argument.
struct argument_word {
    word written;
    std::string option = {};         // its name; empty: a positional argument
    const argument *meant = nullptr; // of the row; null: the command has no such argument
    std::optional<word> value = {};  // the word to read; none for a flag, and when it is missing

    // True for an option whose value must be in the next word.
    bool awaits_value() const
    {
        return meant && !meant->is_flag() && !value;
    }
};

struct line_parts {
    std::optional<word> expected = {};    // the code that came before the command, after "expect"
    std::string name;                     // the command's words, with one blank between
    const command *row = nullptr;         // of this name; null: none that is allowed here
    std::optional<word> unknown = {};     // the first word after the name, when there is no row
    std::vector<argument_word> arguments; // in the order of the line
    bool options_ended = false;           // a "--" came: what follows is positional
};

// Refuses nothing, and reads no value. What it returns refers to the table.
line_parts parts_of(const command_table &table, const std::vector<word> &words, source where);

} // namespace kelctl
