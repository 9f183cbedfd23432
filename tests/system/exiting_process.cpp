// A process that ends while several timestamp threads trace as fast as they can: their timing unit answers every wait
// at once. Ends with status 0 when they were seen tracing.
//
//     exiting-process ENDED         so many threads more have ended before
#include "kel/kel_core_ic_ebcom.h"
#include "platform/vorn_tu.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace
{

constexpr int tracing_threads = 4;
constexpr int32_t shut_down = -5;
constexpr uint64_t enough_waits = 20000;

std::atomic<int> ending_threads;
std::atomic<uint64_t> waits;

} // namespace

// Takes the place of the timing-unit client's: a failure, after which a thread ends; then an event that the synchroniser
// ignores, with an INFO record, and waits again.
extern "C" int32_t vorn_tu_wait_event(void *, vorn_tu_event **event)
{
    static vorn_tu_event ignored = {5, 0, 0};
    if (ending_threads-- > 0)
        return shut_down;
    *event = &ignored;
    ++waits;
    return 0;
}

int main(int, char **argv)
{
    const int ended_threads = atoi(argv[1]);
    ending_threads = ended_threads;
    for (int i = 0; i < ended_threads + tracing_threads; ++i) {
        if (kel_core_ic_ebcom_start() != 0 || kel_core_ic_ebcom_stop() != 0)
            return 1;
    }
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (waits < enough_waits) {
        if (std::chrono::steady_clock::now() > patience)
            return 2;
        std::this_thread::yield();
    }
    return 0;
}
