/*
 * fault_book.cpp - counting calls and applying fault rules.
 */
#include "softnode/fault_book.h"

#include "softnode/fault_text.h"

#include <utility>

namespace softnode
{

std::string FaultBook::add(std::string_view rules)
{
    std::vector<FaultRule> read;
    std::string problem = read_fault_text(rules, read);
    if (problem.empty())
        add(std::move(read));
    return problem;
}

void FaultBook::clear()
{
    entries_.clear();
    entries_of_.fill({});
}

FaultEffects FaultBook::begin_call(std::size_t function)
{
    const std::uint64_t call = ++calls_[function];
    for (const std::size_t place : entries_of_[function]) {
        Entry &entry = entries_[place];
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
        const std::size_t function = rule.function;
        entries_of_[function].push_back(entries_.size());
        entries_.push_back({std::move(rule), calls_[function]});
    }
}

} // namespace softnode
