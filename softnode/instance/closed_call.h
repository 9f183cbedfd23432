/*
 * closed_call.h - the way into a closed function that returns a code.
 */
#ifndef SOFTNODE_CLOSED_CALL_H
#define SOFTNODE_CLOSED_CALL_H

#include "softnode/instance/instance.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>
#include <string_view>

namespace softnode
{

/**
 * What happens to every call of a closed function first, under the lock: it is counted, takes the time and waits for
 * the release that a fault rule says. Answers what the call returns instead of doing its work, if a rule or a trial
 * wants that.
 */
std::optional<std::int64_t> begin_call(std::size_t function);

/** What a call returns that there is no memory for: the code of Refusal::full (closed/codes.h). */
template <class Code> Code no_memory_code();
template <> std::int32_t no_memory_code();
template <> std::uint32_t no_memory_code();

/**
 * A call: alone, counted, and slowed, blocked or made to fail when a rule says so. Otherwise `work` does what the
 * function is for and yields its code.
 */
template <class Code, class Work> Code closed_call(std::string_view function, Work work)
{
    return with_node([&](Node &node) -> Code {
        if (const auto result = begin_call(closed_function(function).value()))
            return static_cast<Code>(*result);
        try {
            return work(node);
        } catch (const std::bad_alloc &) {
            return no_memory_code<Code>();
        }
    });
}

} // namespace softnode

#endif
