// From a line to a command of the table: one grammar for the program's arguments, for scripts and for the shell.
//
//     ebcom path add 02:00:02:02:00:01 --port RLU1P --rate "100 Mbit/s" --burst=4096    # comment
//
// Words are separated by blanks. Quotes of either kind keep blanks and # in a word; a backslash does so for the
// character after it, but not within single quotes. Options may be anywhere after the command, their values in the next
// word, whatever it is, or after a "="; after "--" there are none. Those that every command has may be before it, too.
//
//     const invocation asked = parse(table, words_of("group add 300"), source::shell);
//     asked.given.id("GROUP")     // 300
#pragma once

#include "kelctl/language/line_parts.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What is wrong with a line. Column 0: it has none.
class wrong_line : public std::runtime_error
{
public:
    wrong_line(const std::string &message, uint32_t column) : std::runtime_error(message), column_(column)
    {
    }

    uint32_t column() const
    {
        return column_;
    }

private:
    uint32_t column_;
};

// The words of a line without its end; none of an empty line or a comment. Throws wrong_line.
std::vector<word> words_of(std::string_view line);

// What of a line says how results are shown.
manner manner_of(const line_parts &parts);

// Takes an option with its value that is before the command, such as --node, out of the program's words. None when it
// is not there. Throws wrong_line.
std::optional<std::string> take_option_before_command(std::vector<word> &words, std::string_view name);

// The command of the table that these words ask for, with its arguments read. Throws wrong_line.
invocation parse(const command_table &table, const std::vector<word> &words, source where);

} // namespace kelctl
