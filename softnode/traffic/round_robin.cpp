/*
 * round_robin.cpp - taking turns.
 */
#include "softnode/traffic/round_robin.h"

namespace softnode
{

void RoundRobin::join(Handle queue, Instant from)
{
    joining_.put(queue, from);
}

void RoundRobin::leave(Handle queue)
{
    joining_.put(queue, std::nullopt);
    ready_.erase(queue);
}

std::optional<Instant> RoundRobin::next() const
{
    return ready_.empty() ? joining_.next() : Instant{0};
}

Handle RoundRobin::take_turn(Instant now)
{
    while (const auto joins = joining_.take_due(now))
        ready_.insert(joins->who);

    auto turn = ready_.upper_bound(last_);
    if (turn == ready_.end())
        turn = ready_.begin();
    last_ = *turn;
    ready_.erase(turn);
    return last_;
}

} // namespace softnode
