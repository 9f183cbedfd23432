/*
 * counters.cpp - counting frames.
 */
#include "softnode/counters.h"

namespace softnode
{

void Counters::account(Fate fate, const Frames &frames)
{
    Tally &tally = tallies_[static_cast<std::size_t>(fate)];
    tally.frames += frames.count;
    tally.octets += frames.count * frames.length;
}

const Tally &Counters::operator[](Fate fate) const
{
    return tallies_[static_cast<std::size_t>(fate)];
}

} // namespace softnode
