// Starts, stops, adds, removes, reads and dumps for the given time. Every round must succeed and be refused as
// often as the first one, and the memory in use must stay where it was after the first rounds.
//
//     soak [SECONDS]
//
// A start leaves a timestamp thread behind for good, as it must. Here thread creation answers with a positive number,
// which a start takes for success, so that what is measured is everything else.
#include "requests.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace
{

using proof::on_eioa;
using proof::on_hsfp;
using proof::on_ob;

// One block in each round, of the smallest that malloc gives, is more than this.
constexpr size_t bound = 4096; // octets
constexpr uint64_t first_rounds = 50;
constexpr uint64_t fewest_rounds = 200;
constexpr int default_seconds = 3;

// How the operations of a round went.
struct tally {
    uint32_t succeeded = 0;
    uint32_t refused = 0;

    void add(uint32_t code)
    {
        ++(code == 0 ? succeeded : refused);
    }

    bool operator==(const tally &) const = default;
};

void read_queue(const uint8_t *mac, tally &count)
{
    ebcom_queue_stats stats;
    char text[512];
    void *handle = nullptr;
    count.add(kel_core_ic_ebcom_queue_stats_get(mac, &stats));
    count.add(kel_core_ic_ebcom_queue_fmt_stats_get_2(mac, text, sizeof text, 1));
    count.add(kel_ic_ebcom_queue_handle_get(mac, &handle));
}

void add_and_remove_path(const proof::mac_bytes &mac, int32_t port, tally &count)
{
    const kel_ebcom_path_config config = proof::add(mac, port).path;
    count.add(kel_core_ic_ebcom_path_add(&config));
    count.add(kel_core_ic_ebcom_path_add(&config));
    read_queue(mac.data(), count);
    count.add(kel_core_ic_ebcom_path_rem(&config));
    count.add(kel_core_ic_ebcom_path_rem(&config));
    read_queue(mac.data(), count);
}

// A destination that only the stop releases.
void leave_shaper(const proof::mac_bytes &mac, tally &count)
{
    const kel_ebcom_path_config config = proof::add(mac, 7).path;
    ork_ebcom_pcep_path path{};
    count.add(kel_ic_ebcom_add_shaper(&config, &path));
}

void service(tally &count)
{
    count.add(kel_core_ic_ebcom_start());
    for (const auto &mac : {on_ob, on_eioa, on_hsfp}) {
        for (const int32_t port : {6, 19, 12, 14})
            add_and_remove_path(mac, port, count);
        leave_shaper(mac, count);
    }
    count.add(kel_core_ic_ebcom_qos_handle_dump());
    count.add(kel_core_ic_ebcom_stop());
}

void end_points(tally &count)
{
    count.add(kel_core_ic_pcep_start());
    for (const uint32_t id : {1U, 7U, 511U, 512U}) {
        const kel_pcep_config config = proof::pcep(id, on_hsfp).pcep;
        pcep_stats stats;
        count.add(kel_core_ic_pcep_add(id, &config));
        count.add(kel_core_ic_pcep_stats_get(id, &stats));
    }
    count.add(kel_core_ic_pcep_mc_group_add(9));
    count.add(kel_core_ic_pcep_mc_member_add(9, 7));
    count.add(kel_core_ic_pcep_handle_dump(nullptr));
    count.add(kel_core_ic_pcep_mc_member_rem(9, 7));
    count.add(kel_core_ic_pcep_mc_group_rem(9));
    count.add(kel_core_ic_pcep_rem(7));
    count.add(kel_core_ic_pcep_stop());
}

tally one_round()
{
    tally count;
    scripted::renew();
    scripted::fail("pthread_create", 11, 1, scripted::every);
    service(count);
    end_points(count);
    transcript::forget();
    return count;
}

// False when a round was not as the first one.
bool repeat(const tally &first, uint64_t fewest, std::chrono::seconds duration, uint64_t &rounds)
{
    const auto end = std::chrono::steady_clock::now() + duration;
    for (rounds = 0; rounds < fewest || std::chrono::steady_clock::now() < end; ++rounds)
        if (const tally now = one_round(); now != first) {
            std::printf("round %lu: %u operations succeeded and %u were refused, not %u and %u\n", rounds + 1,
                        now.succeeded, now.refused, first.succeeded, first.refused);
            return false;
        }
    return true;
}

} // namespace

int main(int count, char **arguments)
{
    transcript::begin();
    const std::chrono::seconds duration(count > 1 ? std::atoi(arguments[1]) : default_seconds);
    const tally first = one_round();
    uint64_t rounds = 0;
    if (!repeat(first, first_rounds, std::chrono::seconds(0), rounds))
        return EXIT_FAILURE;
    const size_t before = mallinfo2().uordblks;
    const bool alike = repeat(first, fewest_rounds, duration, rounds);
    const size_t after = mallinfo2().uordblks;
    std::printf("%lu rounds, %u operations succeeding and %u refused in each: %zu octets in use before, %zu after\n",
                rounds, first.succeeded, first.refused, before, after);
    return alike && after <= before + bound ? EXIT_SUCCESS : EXIT_FAILURE;
}
