// Any octets as a script: every line is a command, or told as a problem with its place, and may be completed anywhere.
// Nothing is carried out.
#include "kelctl/commands.h"
#include "kelctl/completion.h"
#include "kelctl/script.h"
#include "kelctl/undo.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{

using namespace kelctl;

void check_line(const script_line &line, uint32_t lines)
{
    const invocation &asked = line.asked;
    if (line.number == 0 || line.number > lines || !asked.row || !asked.chosen || !asked.row->allowed_in(place::script))
        std::abort();
    for (const argument &one : asked.row->arguments)
        if (one.required && !one.repeated && !one.is_flag() && !asked.given.has(one.name) && asked.row->name != "help")
            std::abort();
    if (const auto undo = undo_of(asked, commands()); undo && !undo->chosen)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *octets, size_t count)
{
    const std::string_view text(reinterpret_cast<const char *>(octets), count);
    const auto lines = static_cast<uint32_t>(std::ranges::count(text, '\n')) + 1;
    const script parsed = parse_script(commands(), text);
    for (const script_line &line : parsed.lines)
        check_line(line, lines);
    for (const problem &one : parsed.problems)
        if (one.message.empty() || one.at.line == 0 || one.at.line > lines)
            std::abort();
    complete(commands(), text.substr(0, text.find('\n')), {}, place::shell);
    return 0;
}
