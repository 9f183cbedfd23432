/*
 * delays.h - how long frames waited: their sum and the largest exactly, any quantile within 1 %.
 *
 * Delays are counted by their upper seven bits, so a value shown stands for others up to 1 / 128 of it away.
 */
#ifndef SOFTNODE_DELAYS_H
#define SOFTNODE_DELAYS_H

#include <cstdint>
#include <vector>

namespace softnode
{

class Delays
{
public:
    void add(std::uint64_t nanoseconds);

    std::uint64_t frames() const;
    std::uint64_t sum() const; /* wraps around */
    std::uint64_t largest() const;

    /** What so many of a hundred waited at most; 0 when nobody did. */
    std::uint64_t percentile(std::uint32_t of_hundred) const;

private:
    std::vector<std::uint64_t> counts_; /* by the upper bits */
    std::uint64_t frames_ = 0;
    std::uint64_t sum_ = 0;
    std::uint64_t largest_ = 0;
};

} // namespace softnode

#endif
