/*
 * fault_book.h - how often each closed function was called, and what fault rules make of its calls.
 */
#ifndef SOFTNODE_FAULT_BOOK_H
#define SOFTNODE_FAULT_BOOK_H

#include "softnode/faults/closed_functions.h"
#include "softnode/faults/fault_rule.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace softnode
{

class FaultBook
{
public:
    struct Entry {
        FaultRule rule;
        std::uint64_t calls_before = 0; /* what its watch had counted when the rule was added */
        std::uint64_t hits = 0;
    };

    void add(std::vector<FaultRule> rules);

    /** Adds the rules of a text, or none, and answers what is wrong with the first bad one; see fault_text.h. */
    std::string add(std::string_view rules);

    void clear();

    /**
     * Counts a call. Of the rules that match it, the one added first applies. However many rules there
     * are, each is looked at when its calls begin, when it is met, and when they are over.
     */
    FaultEffects begin_call(std::size_t function);

    const std::array<std::uint64_t, closed_functions.size()> &calls() const;
    const std::vector<Entry> &entries() const;

    void reset();

private:
    /*
     * Rules for one function, by their places among the entries, and the calls that they count. A rule is in one of the
     * two sets until it is over.
     */
    struct Watch {
        std::uint64_t calls = 0;
        std::set<std::pair<std::uint64_t, std::size_t>> coming; /* by the call that they begin with */
        std::set<std::size_t> begun;                            /* one that is over stays until it is the first */
    };

    using OfThread = std::pair<std::thread::id, std::size_t>; /* a function */

    /* The place of the rule that is due for the next call of the watch; that behind all when there is none. */
    std::size_t due(Watch &watch);

    std::array<std::uint64_t, closed_functions.size()> calls_{};
    std::vector<Entry> entries_;
    std::array<Watch, closed_functions.size()> watches_{};
    std::map<OfThread, Watch> thread_watches_; /* of rules that count the calls of one thread */
};

} // namespace softnode

#endif
