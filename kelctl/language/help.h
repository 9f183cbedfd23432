// Help, made from a table of commands. Where a width is given, no line is longer, unless a word is.
#pragma once

#include "kelctl/language/command.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What something means, in words.
struct meaning {
    std::string_view what;
    std::string_view means;
};

// What help and the manual page have in common. All of it lives as long as the program.
std::span<const meaning> exit_statuses();
std::span<const meaning> options_before_command();  // which node it is for
std::span<const meaning> options_without_command(); // given alone
std::span<const meaning> environment_variables();   // that change what the program does

// How values are written, wherever they are.
std::string value_notations();

// "--port PORT", "SCRIPT", "COMMAND..."
std::string with_value(const argument &argument);

// What it is for, what it may be, and what counts without it.
std::string argument_text(const argument &argument);

// How it is asked for, in parts that belong together: "ebcom path add", "MAC", "--port PORT", "[--rate RATE]".
std::vector<std::string> usage_of(const command &row);

// Where a mistake in these words of a command is explained: "See "kelctl ebcom path --help"."
std::string help_hint(std::string_view words, source where);

// Of one command: how it is asked for, its arguments, its details, an example.
std::string help_of(const command &row, source where, size_t width);

// The commands that begin with these words; of all when there are none, and then with how the program itself is used.
std::string help_of_words(const command_table &table, std::string_view words, source where, size_t width);

} // namespace kelctl
