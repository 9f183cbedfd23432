/*
 * fault_book.h - how often each closed function was called, and which calls are to fail.
 */
#ifndef SOFTNODE_FAULT_BOOK_H
#define SOFTNODE_FAULT_BOOK_H

#include "softnode/closed_functions.h"
#include "softnode/fault_rule.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace softnode
{

class FaultBook
{
public:
    struct Entry {
        FaultRule rule;
        std::uint64_t calls_before = 0; /* the function's calls when the rule was added: the rule does not count them */
        std::uint64_t hits = 0;
    };

    /**
     * Adds rules, separated by semicolons; an empty one is skipped. Answers what is wrong with the first bad one, and
     * then adds none; empty when all are good.
     */
    std::string add(std::string_view rules);
    void clear();

    /** Counts a call. When rules make it fail, answers the result of the one that was added first. */
    std::optional<std::int64_t> enter(std::size_t function);

    const std::array<std::uint64_t, closed_functions.size()> &calls() const;
    const std::vector<Entry> &entries() const;

    void reset();

private:
    std::array<std::uint64_t, closed_functions.size()> calls_{};
    std::vector<Entry> entries_;
};

} // namespace softnode

#endif
