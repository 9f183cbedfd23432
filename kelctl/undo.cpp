// From a command to the one that undoes it.
#include "kelctl/undo.h"

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

// Whether one undoes what the other does, too: the same command with the same arguments.
bool same(const invocation &one, const invocation &other)
{
    return one.row == other.row && one.given.all() == other.given.all();
}

} // namespace

std::optional<invocation> undo_of(const invocation &asked, const command_table &table)
{
    const command *row = table.find(asked.row->undo);
    if (!row)
        return std::nullopt;
    invocation undo;
    undo.row = row;
    undo.chosen = &row->variants.front();
    for (const argument &one : row->arguments)
        if (const auto value = asked.given.all().find(one.name); value != asked.given.all().end())
            undo.given.set(one.name, value->second);
    return undo;
}

void standing_commands::note(uint32_t line, const invocation &asked)
{
    const auto undone = std::find_if(standing_.rbegin(), standing_.rend(),
                                     [&asked](const made_command &made) { return same(made.undo, asked); });
    if (undone != standing_.rend())
        standing_.erase(std::next(undone).base());
    else if (auto undo = undo_of(asked, table_))
        standing_.push_back({line, std::move(*undo)});
}

std::optional<made_command> standing_commands::take_last()
{
    if (standing_.empty())
        return std::nullopt;
    made_command last = std::move(standing_.back());
    standing_.pop_back();
    return last;
}

} // namespace kelctl
