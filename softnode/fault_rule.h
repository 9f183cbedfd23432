/*
 * fault_rule.h - one fault rule and how it is written:
 *
 *     function[:call[*times]]=result
 *
 *     function    a closed function that returns a code
 *     call        1 to 4294967295; without it every call fails
 *     times       1 to 4294967295; without it one call fails
 *     result      -2147483648 to 4294967295, taken as the function's own 32-bit type. A result of 0 makes a call that
 *                 claims to have succeeded and did nothing.
 *
 * No blanks inside a rule; blanks around it do no harm.
 */
#ifndef SOFTNODE_FAULT_RULE_H
#define SOFTNODE_FAULT_RULE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace softnode
{

struct FaultRule {
    std::string text;         /* as written */
    std::size_t function = 0; /* place in closed_functions */
    std::uint64_t first = 1;  /* the first call that fails, counted from 1 */
    std::uint64_t times = 0;  /* how many calls fail from there on */
    std::int64_t result = 0;

    bool hits(std::uint64_t call) const;
};

/** Reads one rule. Answers what is wrong with it, naming the rule; empty when nothing is. */
std::string read_fault_rule(std::string_view text, FaultRule &rule);

} // namespace softnode

#endif
