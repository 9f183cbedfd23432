// Times calls, for a comparison with the same calls recorded: bench/record_cost. Prints nanoseconds a call.
#include "kel/kel_core_ic_ebcom.h"

#include <chrono>
#include <cstdio>

namespace
{

template <typename Work> double nanoseconds_each(int count, Work work)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i)
        work();
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
    return took.count() / count;
}

} // namespace

int main()
{
    constexpr int count = 20'000;
    const kel_ebcom_path_config path = {.dst_mac = {2, 0, 0, 2, 0, 1},
                                        .shaping_enabled = 0,
                                        .iell_port = 6,
                                        .shaping_rate = 0,
                                        .buffer_threshold = 0,
                                        .burst_size = 0};
    kel_ebcom_capabilities capabilities;
    if (kel_core_ic_ebcom_start() != 0)
        return 1;
    const double cheapest = nanoseconds_each(count, [&] { kel_core_ic_ebcom_capabilities_get(&capabilities); });
    const double of_path = nanoseconds_each(count, [&] {
        kel_core_ic_ebcom_path_add(&path);
        kel_core_ic_ebcom_path_rem(&path);
    });
    std::printf("%.1f %.1f\n", cheapest, of_path / 2);
    return 0;
}
