// Two pieces of work timed in turns of well under a millisecond, so that whatever else the machine does falls on
// both, and the median over the turns of the first one's time over the second one's.
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

template <typename Work> double seconds(const Work &work)
{
    using clock = std::chrono::steady_clock;
    const auto begin = clock::now();
    work();
    return std::chrono::duration<double>(clock::now() - begin).count();
}

class turns
{
public:
    // Gives the first one's time.
    template <typename Measured, typename Reference> double take(const Measured &measured, const Reference &reference)
    {
        const double time = seconds(measured);
        ratios_.push_back(time / seconds(reference));
        return time;
    }

    double median_ratio()
    {
        const auto middle = ratios_.begin() + static_cast<ptrdiff_t>(ratios_.size() / 2);
        std::ranges::nth_element(ratios_, middle);
        return *middle;
    }

private:
    std::vector<double> ratios_;
};
