// A command as a person would type it: the inverse of parse(). `plan` and the reports of a take-down use it.
#pragma once

#include "kelctl/language/command.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// "ebcom path add 02:00:00:02:00:01 --port RLU1P --rate "100 Mbit/s" --burst "64 KiB"". Defaults, and options of how
// results are shown, are left out.
std::string text_of(const invocation &asked);

// The same word by word, without quotes.
std::vector<std::string> words_of(const invocation &asked);

// A value as a person would write it, without the quotes that a blank in it needs: "100 Mbit/s".
std::string word_of(const argument_kind &kind, const argument_value &value);

// Whether the argument has this value when it is not given.
bool is_default(const argument &one, const argument_value &value);

// A command as it is typed there: the program's begins with "kelctl".
std::string typed(std::string_view command, source where);

} // namespace kelctl
