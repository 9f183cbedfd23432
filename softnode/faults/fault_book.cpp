/*
 * fault_book.cpp - counting calls and applying fault rules.
 */
#include "softnode/faults/fault_book.h"

#include "softnode/faults/fault_text.h"

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
}

FaultEffects FaultBook::begin_call(std::size_t function)
{
    const std::uint64_t call = ++calls_[function];
    auto &[coming, begun] = watches_[function];
    for (; !coming.empty() && coming.begin()->first <= call; coming.erase(coming.begin()))
        begun.insert(coming.begin()->second);
    for (; !begun.empty(); begun.erase(begun.begin())) {
        Entry &entry = entries_[*begun.begin()];
        if (!entry.rule.hits(call - entry.calls_before))
            continue;
        ++entry.hits;
        return entry.rule.effects;
    }
    return {};
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
        const std::uint64_t calls_before = calls_[rule.function];
        watches_[rule.function].coming.emplace(calls_before + rule.first, entries_.size());
        entries_.push_back({std::move(rule), calls_before});
    }
}

} // namespace softnode
