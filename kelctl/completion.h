// What the word that is being typed may become, told by the table of commands.
#pragma once

#include "kelctl/command.h"
#include "kelctl/known_words.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

struct completion {
    std::vector<std::string> words; // whole ones
    bool files = false;             // names of files are meant as well
};

// `line` is what stands before the cursor. Words that begin like its last one, in either case; what stands before decides
// whether a command's word, an option or a value is due. Nothing within open quotes and after what is no command.
completion complete(std::string_view line, const known_words &known, place where);

} // namespace kelctl
