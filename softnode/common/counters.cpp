/*
 * counters.cpp - counting frames.
 */
#include "softnode/common/counters.h"

#include <algorithm>

namespace softnode
{

Tally &Tally::operator+=(const Tally &more)
{
    frames += more.frames;
    octets += more.octets;
    return *this;
}

Tally &Tally::operator+=(const Frames &more)
{
    return *this += Tally{more.count, more.count * more.length};
}

Waiting most_of(const Waiting &left, const Waiting &right)
{
    return {std::max(left.frames, right.frames), std::max(left.octets, right.octets),
            std::max(left.blocks, right.blocks)};
}

void Counters::account(Fate fate, const Frames &frames)
{
    tallies_[static_cast<std::size_t>(fate)] += frames;
}

void Counters::add(Fate fate, const Tally &frames)
{
    tallies_[static_cast<std::size_t>(fate)] += frames;
}

const Tally &Counters::operator[](Fate fate) const
{
    return tallies_[static_cast<std::size_t>(fate)];
}

} // namespace softnode
