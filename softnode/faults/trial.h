/*
 * trial.h - one run of a sweep: which closed functions are called, by which thread, and the one call that is to fail.
 *
 * Calls are counted per thread. How the calls of two threads lie among each other is different every time; those of one
 * thread are not, so the same fault meets the same call again.
 */
#ifndef SOFTNODE_TRIAL_H
#define SOFTNODE_TRIAL_H

#include "softnode/common/user.h"
#include "softnode/faults/closed_functions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace softnode
{

struct TrialCall {
    std::size_t thread = 0;   /* 0: the scenario's own; others from 1, in the order of their first calls */
    std::size_t function = 0; /* index in closed_functions */
    std::uint64_t call = 1;   /* its number among the thread's calls of the function, from 1 */
};

struct TrialFault {
    TrialCall call;
    std::int64_t code = 0;
    bool persistent = false; /* all later calls of the function fail, too, when this thread makes them */

    bool hits(const TrialCall &made) const;
};

class Trial
{
public:
    Trial(User scenario, std::optional<TrialFault> fault);

    /** Notes a call. Answers what it returns when it is to fail. */
    std::optional<std::int64_t> begin_call(User user, std::size_t function);

    /** From now on calls are neither noted nor made to fail. */
    void stop();

    /** Thread by thread, in the order they were made. */
    std::vector<TrialCall> calls() const;

private:
    struct Thread {
        std::array<std::uint64_t, closed_functions.size()> counts{};
        std::vector<TrialCall> calls{};
    };

    std::size_t number_of(User user);

    std::optional<TrialFault> fault_;
    std::map<User, std::size_t> numbers_;
    std::vector<Thread> threads_;
    bool stopped_ = false;
};

} // namespace softnode

#endif
