/*
 * fault_rule.h - one fault rule and how it is written:
 *
 *     function[:call[*times]]=effect[,effect]
 *
 *     function    a closed function that returns a code
 *     call        1 to 4294967295; without it the rule is for every call
 *     times       1 to 4294967295; without it the rule is for one call
 *     effect      each of these once at most, in any order:
 *         a result          -2147483648 to 4294967295, taken as the function's own 32-bit type. A result of 0 makes a
 *                           call that claims to have succeeded and did nothing.
 *         latency:NUMBER    and its unit ns, us, ms or s; 1 to 4294967295
 *         block             for functions of the timing unit
 *         own-thread        beside others: the rule counts, and is for, calls of the thread that adds it
 *
 * No blanks inside a rule.
 */
#ifndef SOFTNODE_FAULT_RULE_H
#define SOFTNODE_FAULT_RULE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace softnode
{

/** What becomes of a call, in this order: it takes time, it waits to be released, it returns. */
struct FaultEffects {
    std::uint64_t latency = 0; /* nanoseconds of virtual time */
    bool block = false;
    std::optional<std::int64_t> result; /* none: the call does its work */
};

struct FaultRule {
    std::string text;         /* as written */
    std::size_t function = 0; /* index in closed_functions */
    std::uint64_t first = 1;  /* the first call it is for, counted from 1 */
    std::uint64_t times = 0;  /* for how many calls from there on */
    bool own_thread = false;  /* of those of the thread that adds the rule */
    FaultEffects effects = {};

    bool hits(std::uint64_t call) const;
};

struct FaultProblem {
    std::size_t at = 0; /* the octet of the text, from 0, where what is wrong begins */
    std::string what;
};

/** Reads one rule. Answers what is wrong with it, or nothing. */
std::optional<FaultProblem> read_fault_rule(std::string_view text, FaultRule &rule);

} // namespace softnode

#endif
