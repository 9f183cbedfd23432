// Numbers of any size, such as durations, counted by their upper seven bits: a value shown for a quantile stands for
// others up to 1 / 128 of it away.
#pragma once

#include <cstdint>
#include <vector>

namespace counting
{

class histogram
{
public:
    void add(uint64_t value);
    void add(const histogram &other);

    uint64_t count() const
    {
        return count_;
    }

    // Wraps around.
    uint64_t sum() const
    {
        return sum_;
    }

    // 0 without any.
    uint64_t largest() const
    {
        return largest_;
    }

    // What `percent` of all are at most; 0 without any. Exact below 128, and where all are equal.
    uint64_t quantile(unsigned percent) const;

private:
    std::vector<uint64_t> counts_; // by the upper bits, as many as the largest needs
    uint64_t count_ = 0;
    uint64_t sum_ = 0;
    uint64_t smallest_ = 0;
    uint64_t largest_ = 0;
};

} // namespace counting
