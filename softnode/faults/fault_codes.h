/*
 * fault_codes.h - the codes that a sweep makes each closed library answer with.
 *
 * A caller can do three things about a failure: give up, try again, or distinguish the limits of the node from its own
 * mistakes. One code for each is enough to meet every branch that a caller may have; more would only repeat them.
 *
 *     driver kit     -1 INVAL, a refusal for good; -4 AGAIN, which may pass; -9 OUTOFRANGE, no room in a table
 *     companion      3 out of range, a refusal for good; 10 limit reached, no room; 13 failed, of whatever reason. Its
 *                    texts name no failure that may pass.
 *     timing unit    -1 INVAL; -5 SHUTDOWN, which ends a wait
 *     formatting     10 limit reached: the text was cut, all that can go wrong for a good buffer
 *     restart        -1 INVAL: a caller cannot react to a restart that is not accepted
 */
#ifndef SOFTNODE_FAULT_CODES_H
#define SOFTNODE_FAULT_CODES_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace softnode
{

/** The codes for a closed function, by its index in closed_functions. */
std::span<const std::int64_t> fault_codes(std::size_t function);

/** All closed functions with their codes, as softnode_fault_functions_json() lists them. */
std::string fault_function_list();

} // namespace softnode

#endif
