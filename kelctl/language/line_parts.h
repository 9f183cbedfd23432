// What each word of a line is by a table of commands, before any of them is read: the grammar that the parser and
// completion share.
#pragma once

#include "kelctl/language/command.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

struct word {
    std::string text;
    // Its first character and what follows its last one, counted from 1 in characters; 0: it stands in no line.
    uint32_t column = 0;
    uint32_t end = 0;
};

// An option with its value, or what stands by its place among the others.
struct argument_word {
    word written;
    std::string option = {};         // its name; empty: it stands by its place
    const argument *meant = nullptr; // null: the command has none such
    std::optional<word> value = {};  // what is to be read; none of a flag, and where it is missing

    // Whether it is an option whose value is in the next word.
    bool awaits_value() const
    {
        return meant && !meant->is_flag() && !value;
    }
};

struct line_parts {
    std::string name;                     // the command's words, with one blank between
    const command *row = nullptr;         // of exactly these, where commands come from here
    std::optional<word> unknown = {};     // what follows them and belongs to no command
    std::vector<argument_word> arguments; // in their order
    bool options_ended = false;           // by "--"
};

line_parts parts_of(const command_table &table, const std::vector<word> &words, source where);

} // namespace kelctl
