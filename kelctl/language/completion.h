// Completion of the word before the cursor, from a table of commands: in kelctl's own shell, and for bash and zsh,
// whose scripts call `kelctl --complete`.
//
//     "ebcom pa"                        path
//     "ebcom path add --po"             --port
//     "ebcom path add --port RLU1"      RLU1P, RLU1Q, ...
//
// The words of an argument's value come from its kind (argument_kind.h).
#pragma once

#include "kelctl/language/known_words.h"
#include "kelctl/language/line_parts.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct candidate {
    std::string word; // the whole word, with the typed beginning
    std::string help; // of a command or an option; of a group without help, its next words; empty for a value
};

struct completion {
    std::vector<candidate> candidates = {}; // in the table's order; of numbers, in theirs
    bool files = false;                     // also names of files, which the shell finds itself
};

// The words that start with `begun`, in upper or lower case. The words before it decide whether a word of a command, an
// option or a value comes next. Nothing after words that are no command.
completion complete(const command_table &table, const std::vector<word> &before, const std::string &begun,
                    const known_words &known, source where);

// The same for the text before the cursor. Nothing inside open quotes.
completion complete(const command_table &table, std::string_view line, const known_words &known, source where);

// For the scripts of bash and zsh: one candidate a line, with its help after a tab; the line "@files" asks the shell
// for names of files.
std::string lines_of(const completion &found);

} // namespace kelctl
