// Durations in nanoseconds, summed up in bounded room: the total and the largest exactly, quantiles within half a percent.
#pragma once

#include <cstdint>
#include <vector>

namespace kel_trace
{

class durations
{
public:
    // Clocks of a recording may step back: a negative duration counts as 0.
    void add(int64_t nanoseconds, int64_t begin);
    void add(const durations &other);

    uint64_t count() const
    {
        return count_;
    }
    int64_t total() const
    {
        return total_;
    }
    int64_t largest() const
    {
        return largest_;
    }
    // When the largest began.
    int64_t largest_at() const
    {
        return largest_at_;
    }

    // The duration that `percent` of all do not exceed, 0 without any. Exact up to 256 ns.
    int64_t quantile(unsigned percent) const;

private:
    uint64_t count_ = 0;
    int64_t total_ = 0;
    int64_t smallest_ = 0;
    int64_t largest_ = 0;
    int64_t largest_at_ = 0;
    std::vector<uint64_t> buckets_; // as many as the largest needs
};

} // namespace kel_trace
