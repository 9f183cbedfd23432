// Matching a command with the one that it undoes.
#include "kelctl/session/undo.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

bool same(const invocation &one, const invocation &other)
{
    return one.row == other.row && one.given == other.given;
}

} // namespace

std::optional<invocation> undo_of(const invocation &asked, const command_table &table)
{
    if (asked.row->undo.empty())
        return std::nullopt;
    const command *row = table.find(asked.row->undo);
    if (!row)
        return std::nullopt;
    invocation undo = {.row = row, .chosen = &row->variants.front(), .given = {}, .line = asked.line, .raw = asked.raw};
    take_arguments(*row, asked.given, undo.given);
    return undo;
}

// Searches from the newest: most commands that undo another undo the newest.
void undo_stack::note(const invocation &asked)
{
    if (auto undo = undo_of(asked, table_)) {
        made_.push_back({asked, std::move(*undo)});
        return;
    }
    if (!asked.row->makes.one.empty()) {
        made_.push_back({asked, {}});
        return;
    }
    const auto undone =
        std::find_if(made_.rbegin(), made_.rend(), [&](const made_command &made) { return same(made.undo, asked); });
    if (undone != made_.rend())
        made_.erase(std::next(undone).base());
}

void undo_stack::note_failed(const invocation &asked)
{
    if (auto undo = undo_of(asked, table_))
        made_.push_back({asked, std::move(*undo), true});
}

void undo_stack::drop_last()
{
    made_.pop_back();
}

std::vector<made_command> undo_stack::take_all()
{
    return std::exchange(made_, {});
}

} // namespace kelctl
