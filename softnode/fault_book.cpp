/*
 * fault_book.cpp - counting calls and applying fault rules.
 */
#include "softnode/fault_book.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace softnode
{

namespace
{

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace

std::string FaultBook::add(std::string_view rules)
{
    std::vector<Entry> added;
    while (!rules.empty()) {
        const std::size_t end = std::min(rules.find(';'), rules.size());
        const std::string_view text = trimmed(rules.substr(0, end));
        rules.remove_prefix(std::min(end + 1, rules.size()));
        if (text.empty())
            continue;
        Entry entry;
        if (std::string problem = read_fault_rule(text, entry.rule); !problem.empty())
            return problem;
        entry.calls_before = calls_[entry.rule.function];
        added.push_back(std::move(entry));
    }
    std::move(added.begin(), added.end(), std::back_inserter(entries_));
    return {};
}

void FaultBook::clear()
{
    entries_.clear();
}

std::optional<std::int64_t> FaultBook::enter(std::size_t function)
{
    const std::uint64_t call = ++calls_[function];
    for (Entry &entry : entries_) {
        if (entry.rule.function != function || !entry.rule.hits(call - entry.calls_before))
            continue;
        ++entry.hits;
        return entry.rule.result;
    }
    return std::nullopt;
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

} // namespace softnode
