/*
 * trial.cpp - noting calls by thread, and failing one.
 */
#include "softnode/faults/trial.h"

namespace softnode
{

bool TrialFault::hits(const TrialCall &made) const
{
    if (made.thread != call.thread || made.function != call.function)
        return false;
    return persistent ? made.call >= call.call : made.call == call.call;
}

Trial::Trial(User scenario, std::optional<TrialFault> fault) : fault_(fault)
{
    number_of(scenario);
}

std::optional<std::int64_t> Trial::begin_call(User user, std::size_t function)
{
    if (stopped_)
        return std::nullopt;
    const std::size_t number = number_of(user);
    Thread &thread = threads_[number];
    const TrialCall &made = thread.calls.emplace_back(TrialCall{number, function, ++thread.counts[function]});
    if (fault_ && fault_->hits(made))
        return fault_->code;
    return std::nullopt;
}

void Trial::stop()
{
    stopped_ = true;
}

std::vector<TrialCall> Trial::calls() const
{
    std::vector<TrialCall> calls;
    for (const Thread &thread : threads_)
        calls.insert(calls.end(), thread.calls.begin(), thread.calls.end());
    return calls;
}

std::size_t Trial::number_of(User user)
{
    const auto [entry, added] = numbers_.emplace(user, threads_.size());
    if (added)
        threads_.emplace_back();
    return entry->second;
}

} // namespace softnode
