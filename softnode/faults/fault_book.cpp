/*
 * fault_book.cpp - counting calls and applying fault rules.
 */
#include "softnode/faults/fault_book.h"

#include "softnode/faults/fault_text.h"

#include <algorithm>
#include <utility>

namespace softnode
{

std::string FaultBook::add(std::string_view rules)
{
    std::vector<FaultRule> read;
    std::string problem = read_given_faults(rules, read);
    if (problem.empty())
        add(std::move(read));
    return problem;
}

void FaultBook::clear()
{
    entries_.clear();
    watches_.fill({});
    thread_watches_.clear();
}

FaultEffects FaultBook::begin_call(std::size_t function)
{
    ++calls_[function];
    std::size_t first = due(watches_[function]);
    if (!thread_watches_.empty())
        if (const auto own = thread_watches_.find({std::this_thread::get_id(), function}); own != thread_watches_.end())
            first = std::min(first, due(own->second));
    if (first == entries_.size())
        return {};
    ++entries_[first].hits;
    return entries_[first].rule.effects;
}

std::size_t FaultBook::due(Watch &watch)
{
    const std::uint64_t call = ++watch.calls;
    auto &[calls, coming, begun] = watch;
    for (; !coming.empty() && coming.begin()->first <= call; coming.erase(coming.begin()))
        begun.insert(coming.begin()->second);
    for (; !begun.empty(); begun.erase(begun.begin()))
        if (const Entry &entry = entries_[*begun.begin()]; entry.rule.hits(call - entry.calls_before))
            return *begun.begin();
    return entries_.size();
}

const std::array<std::uint64_t, closed_functions.size()> &FaultBook::calls() const
{
    return calls_;
}

const std::vector<FaultBook::Entry> &FaultBook::entries() const
{
    return entries_;
}

void FaultBook::reset()
{
    *this = FaultBook{};
}

void FaultBook::add(std::vector<FaultRule> rules)
{
    for (FaultRule &rule : rules) {
        Watch &watch =
            rule.own_thread ? thread_watches_[{std::this_thread::get_id(), rule.function}] : watches_[rule.function];
        watch.coming.emplace(watch.calls + rule.first, entries_.size());
        entries_.push_back({std::move(rule), watch.calls});
    }
}

} // namespace softnode
