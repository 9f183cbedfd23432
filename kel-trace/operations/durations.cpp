// A bucket for each duration up to 256 ns, and 128 for each power of two above.
#include "kel-trace/operations/durations.h"

#include <algorithm>
#include <bit>

namespace kel_trace
{
namespace
{

constexpr unsigned exact_bits = 8;

size_t bucket_of(uint64_t value)
{
    const auto bits = static_cast<unsigned>(std::bit_width(value));
    const unsigned shift = bits > exact_bits ? bits - exact_bits : 0;
    return (static_cast<size_t>(shift) << (exact_bits - 1)) + static_cast<size_t>(value >> shift);
}

// The middle of what falls into a bucket.
int64_t middle_of(size_t bucket)
{
    constexpr size_t half = size_t{1} << (exact_bits - 1);
    if (bucket < 2 * half)
        return static_cast<int64_t>(bucket);
    const size_t shift = bucket / half - 1;
    const uint64_t low = static_cast<uint64_t>(bucket - shift * half) << shift;
    return static_cast<int64_t>(low + (uint64_t{1} << shift) / 2);
}

} // namespace

void durations::add(int64_t nanoseconds, int64_t begin)
{
    nanoseconds = std::max<int64_t>(nanoseconds, 0);
    smallest_ = count_ == 0 ? nanoseconds : std::min(smallest_, nanoseconds);
    if (count_++ == 0 || nanoseconds > largest_) {
        largest_ = nanoseconds;
        largest_at_ = begin;
    }
    total_ += nanoseconds;
    const size_t bucket = bucket_of(static_cast<uint64_t>(nanoseconds));
    if (bucket >= buckets_.size())
        buckets_.resize(bucket + 1);
    ++buckets_[bucket];
}

void durations::add(const durations &other)
{
    if (other.count_ > 0 && (count_ == 0 || other.largest_ > largest_)) {
        largest_ = other.largest_;
        largest_at_ = other.largest_at_;
    }
    if (other.count_ > 0)
        smallest_ = count_ == 0 ? other.smallest_ : std::min(smallest_, other.smallest_);
    count_ += other.count_;
    total_ += other.total_;
    buckets_.resize(std::max(buckets_.size(), other.buckets_.size()));
    for (size_t bucket = 0; bucket < other.buckets_.size(); ++bucket)
        buckets_[bucket] += other.buckets_[bucket];
}

int64_t durations::quantile(unsigned percent) const
{
    const uint64_t rank = (count_ * percent + 99) / 100;
    uint64_t passed = 0;
    for (size_t bucket = 0; bucket < buckets_.size(); ++bucket) {
        passed += buckets_[bucket];
        if (passed >= rank && passed > 0)
            return std::clamp(middle_of(bucket), smallest_, largest_);
    }
    return 0;
}

} // namespace kel_trace
