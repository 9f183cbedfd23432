// Any octets as a script: every line is a command, or told as a problem with its place, and may be completed anywhere.
// Nothing is carried out.
#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"
#include "kelctl/language/command_line.h"
#include "kelctl/language/command_text.h"
#include "kelctl/language/completion.h"
#include "kelctl/session/undo.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace
{

using namespace kelctl;

bool may_be_left_out(const argument &one, const invocation &asked)
{
    return !one.required || one.repeated || one.is_flag() || (!one.instead.empty() && asked.given.has(one.instead));
}

// A command written again is the same command.
void check_text(const invocation &asked)
{
    const invocation again = parse(commands(), words_of(text_of(asked)), source::script);
    if (again.row != asked.row || again.given != asked.given)
        std::abort();
}

void check_line(const invocation &asked, uint32_t lines)
{
    if (asked.line == 0 || asked.line > lines || !asked.row || !asked.chosen || !asked.row->allowed_in(source::script))
        std::abort();
    for (const argument &one : asked.row->arguments)
        if (!may_be_left_out(one, asked) && !asked.given.has(one.name) && asked.row->name != "help")
            std::abort();
    check_text(asked);
    if (const auto undo = undo_of(asked, commands()); undo && !undo->chosen)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *octets, size_t count)
{
    const std::string_view text(reinterpret_cast<const char *>(octets), count);
    const auto lines = static_cast<uint32_t>(std::ranges::count(text, '\n')) + 1;
    const script parsed = parse_script(commands(), text);
    for (const invocation &line : parsed.lines)
        check_line(line, lines);
    for (const problem &one : parsed.problems)
        if (one.message.empty() || one.at.line == 0 || one.at.line > lines)
            std::abort();
    complete(commands(), text.substr(0, text.find('\n')), {}, source::shell);
    return 0;
}
