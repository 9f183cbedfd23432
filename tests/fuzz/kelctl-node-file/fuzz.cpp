// Any octets as a node file: read, checked against the rules, and what is sound made into commands.
#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/language/command_text.h"
#include "kelctl/nodefile/node_file.h"
#include "kelctl/nodefile/node_rules.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{

using namespace kelctl;

void check_places(const problem_list &problems, std::string_view text)
{
    const auto lines = static_cast<uint32_t>(std::ranges::count(text, '\n')) + 1;
    for (const problem &one : problems)
        if (one.message.empty() || one.at.line > lines)
            std::abort();
}

// Every line is a command that a person could type.
void plan(const node_file_read &read)
{
    for (const positioned_line &line : read.lines)
        if (parse(commands(), words_of(text_of(line.asked)), source::script).given != line.asked.given)
            std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *octets, size_t count)
{
    const std::string_view text(reinterpret_cast<const char *>(octets), count);
    node_file_read read = parse_node_file(text, commands());
    check_rules(read, {});
    check_places(read.problems, text);
    if (read.problems.empty())
        plan(read);
    return 0;
}
