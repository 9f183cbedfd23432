// Matching a command with the one that it undoes. Carrying them out is jobs/take_down.cpp.
#include "kelctl/session/undo.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelctl
{

std::optional<invocation> undo_of(const invocation &asked, const command_table &table)
{
    const command *row = table.find(asked.row->undo);
    if (!row)
        return std::nullopt;
    invocation undo = {.row = row, .chosen = &row->variants.front(), .given = {}, .line = asked.line, .raw = asked.raw};
    take_arguments(*row, asked.given, undo.given);
    return undo;
}

// Sorted by their numbers: the map has them in the order of their arguments.
std::vector<const made_command *> undo_stack::made_by(std::string_view row) const
{
    std::vector<const made_command *> made;
    if (const auto found = undone_by_.find(table_.find(table_.find(row)->undo)); found != undone_by_.end())
        for (const auto &[given, one] : found->second)
            made.push_back(&*one);
    std::ranges::sort(made, {}, &made_command::number);
    return made;
}

void undo_stack::push(made_command made)
{
    made.number = next_number_++;
    const entry newest = made_.insert(made_.end(), std::move(made));
    undone_by_[newest->undo.row].emplace(newest->undo.given, newest);
}

// Of equal commands the newest one is undone. What has no undo but makes something (the MP id) stays on the stack, for
// the reports.
void undo_stack::note(const invocation &asked)
{
    if (auto undo = undo_of(asked, table_))
        return push({asked, std::move(*undo)});
    if (!asked.row->makes.one.empty())
        return push({asked, {}});
    undone_by_one_row &undone = undone_by_[asked.row];
    if (const auto [first, end] = undone.equal_range(asked.given); first != end) {
        made_.erase(std::prev(end)->second);
        undone.erase(std::prev(end));
    }
}

void undo_stack::note_failed(const invocation &asked)
{
    push({asked, undo_of(asked, table_).value(), true});
}

// It is the newest of all, and so of its equals.
void undo_stack::drop_last()
{
    const invocation &undo = made_.back().undo;
    undone_by_one_row &undone = undone_by_[undo.row];
    undone.erase(std::prev(undone.upper_bound(undo.given)));
    made_.pop_back();
}

std::list<made_command> undo_stack::take_all()
{
    undone_by_.clear();
    return std::exchange(made_, {});
}

} // namespace kelctl
