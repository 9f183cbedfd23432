// Matching a command with the one that it undoes. Carrying them out is jobs/take_down.cpp.
#include "kelctl/session/undo.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <tuple>
#include <utility>

namespace kelctl
{
namespace
{

// Any order that is the same each time: equal undo commands have to come together. The rows' addresses decide first,
// and arguments are compared only within one row.
bool comes_before(const invocation &one, const invocation &other)
{
    return std::tie(one.row, one.given) < std::tie(other.row, other.given);
}

} // namespace

std::optional<invocation> undo_of(const invocation &asked, const command_table &table)
{
    const command *row = table.find(asked.row->undo);
    if (!row)
        return std::nullopt;
    invocation undo = {.row = row, .chosen = &row->variants.front(), .given = {}, .line = asked.line, .raw = asked.raw};
    take_arguments(*row, asked.given, undo.given);
    return undo;
}

bool undo_stack::by_undo::operator()(const entry &one, const entry &other) const
{
    return comes_before(one->undo, other->undo);
}

bool undo_stack::by_undo::operator()(const entry &one, const invocation &undo) const
{
    return comes_before(one->undo, undo);
}

bool undo_stack::by_undo::operator()(const invocation &undo, const entry &one) const
{
    return comes_before(undo, one->undo);
}

bool undo_stack::by_undo::operator()(const entry &one, const command *undo) const
{
    return std::less()(one->undo.row, undo);
}

bool undo_stack::by_undo::operator()(const command *undo, const entry &one) const
{
    return std::less()(undo, one->undo.row);
}

// Sorted by their numbers: the set has them in the order of their arguments.
std::vector<const made_command *> undo_stack::made_by(std::string_view row) const
{
    const auto [first, end] = undone_by_.equal_range(table_.find(table_.find(row)->undo));
    std::vector<const made_command *> made;
    for (auto one = first; one != end; ++one)
        made.push_back(&**one);
    std::ranges::sort(made, {}, &made_command::number);
    return made;
}

void undo_stack::push(made_command made)
{
    made.number = next_number_++;
    undone_by_.insert(made_.insert(made_.end(), std::move(made)));
}

// Of equal commands the newest one is undone. What has no undo but makes something (the MP id) stays on the stack, for
// the reports.
void undo_stack::note(const invocation &asked)
{
    if (auto undo = undo_of(asked, table_))
        return push({asked, std::move(*undo)});
    if (!asked.row->makes.one.empty())
        return push({asked, {}});
    const auto [first, end] = undone_by_.equal_range(asked);
    if (first == end)
        return;
    const entry newest = *std::prev(end);
    undone_by_.erase(std::prev(end));
    made_.erase(newest);
}

void undo_stack::note_failed(const invocation &asked)
{
    push({asked, undo_of(asked, table_).value(), true});
}

// It is the newest of all, and so of its equals.
void undo_stack::drop_last()
{
    const entry last = std::prev(made_.end());
    undone_by_.erase(std::prev(undone_by_.upper_bound(last)));
    made_.erase(last);
}

std::list<made_command> undo_stack::take_all()
{
    undone_by_.clear();
    return std::exchange(made_, {});
}

} // namespace kelctl
