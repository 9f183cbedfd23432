// A class for each number below 128, and 64 for each power of two above.
#include "counting/histogram.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace counting
{
namespace
{

constexpr unsigned fine_bits = 6;
constexpr size_t fine = size_t{1} << fine_bits;

size_t class_of(uint64_t value)
{
    const auto dropped = static_cast<size_t>(std::bit_width(value | (2 * fine - 1))) - (fine_bits + 1);
    return dropped * fine + (value >> dropped);
}

uint64_t middle_of(size_t number)
{
    const size_t dropped = number < 2 * fine ? 0 : number / fine - 1;
    const uint64_t least = uint64_t{number - dropped * fine} << dropped;
    return least + (uint64_t{1} << dropped) / 2;
}

// Rounded up, and without overflow.
uint64_t share_of(uint64_t count, unsigned percent)
{
    return count / 100 * percent + (count % 100 * percent + 99) / 100;
}

} // namespace

void histogram::add(uint64_t value)
{
    const size_t number = class_of(value);
    if (number >= counts_.size())
        counts_.resize(number + 1);
    ++counts_[number];
    smallest_ = count_ == 0 ? value : std::min(smallest_, value);
    largest_ = std::max(largest_, value);
    ++count_;
    sum_ += value;
}

void histogram::add(const histogram &other)
{
    if (other.count_ == 0)
        return;
    counts_.resize(std::max(counts_.size(), other.counts_.size()));
    for (size_t number = 0; number < other.counts_.size(); ++number)
        counts_[number] += other.counts_[number];
    smallest_ = count_ == 0 ? other.smallest_ : std::min(smallest_, other.smallest_);
    largest_ = std::max(largest_, other.largest_);
    count_ += other.count_;
    sum_ += other.sum_;
}

uint64_t histogram::quantile(unsigned percent) const
{
    uint64_t left = std::max<uint64_t>(share_of(count_, percent), 1);
    for (size_t number = 0; number < counts_.size(); ++number) {
        if (counts_[number] >= left)
            return std::clamp(middle_of(number), smallest_, largest_);
        left -= counts_[number];
    }
    return 0;
}

} // namespace counting
