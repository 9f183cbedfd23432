// What the word that is being typed may become, told by a table of commands: in the shell, and for other shells.
#pragma once

#include "kelctl/language/known_words.h"
#include "kelctl/language/line_parts.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct candidate {
    std::string word; // a whole one
    std::string help; // what a command or option is for, or which words follow; empty of a value
};

struct completion {
    std::vector<candidate> candidates; // in the table's order; of numbers, in theirs
    bool files = false;                // names of files are meant as well
};

// Words that begin like the begun one, in either case; the words before decide whether a command's word, an option or a
// value is due. Nothing after what is no command.
completion complete(const command_table &table, const std::vector<word> &before, const std::string &begun,
                    const known_words &known, source where);

// The same for the line before the cursor. Nothing within open quotes.
completion complete(const command_table &table, std::string_view line, const known_words &known, source where);

// For the completion scripts of other shells: a candidate in each line, what it is for behind a tab; a line "@files"
// where names of files are meant.
std::string lines_of(const completion &found);

} // namespace kelctl
