/*
 * delays.cpp - a histogram that is finer where delays are shorter.
 */
#include "softnode/traffic/delays.h"

#include "softnode/traffic/virtual_clock.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace softnode
{

namespace
{

/* So many classes for each power of two. */
constexpr unsigned fine_bits = 6;
constexpr std::size_t fine = std::size_t{1} << fine_bits;

std::size_t class_of(std::uint64_t nanoseconds)
{
    const auto dropped = static_cast<std::size_t>(std::bit_width(nanoseconds | (2 * fine - 1))) - (fine_bits + 1);
    return dropped * fine + (nanoseconds >> dropped);
}

std::uint64_t middle_of(std::size_t number)
{
    const std::size_t dropped = number < 2 * fine ? 0 : number / fine - 1;
    const std::uint64_t least = std::uint64_t{number - dropped * fine} << dropped;
    return least + (std::uint64_t{1} << dropped) / 2;
}

} // namespace

void Delays::add(std::uint64_t nanoseconds)
{
    const std::size_t number = class_of(nanoseconds);
    if (number >= counts_.size())
        counts_.resize(number + 1);
    ++counts_[number];
    ++frames_;
    sum_ += nanoseconds;
    largest_ = std::max(largest_, nanoseconds);
}

std::uint64_t Delays::frames() const
{
    return frames_;
}

std::uint64_t Delays::sum() const
{
    return sum_;
}

std::uint64_t Delays::largest() const
{
    return largest_;
}

std::uint64_t Delays::percentile(std::uint32_t of_hundred) const
{
    Wide before = 0;
    for (std::size_t number = 0; number < counts_.size(); ++number) {
        before += counts_[number];
        if (counts_[number] != 0 && before * 100 >= Wide{frames_} * of_hundred)
            return std::min(middle_of(number), largest_);
    }
    return 0;
}

} // namespace softnode
