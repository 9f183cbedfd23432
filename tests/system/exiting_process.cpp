// A process that ends while its threads work, or without having worked. It prints "glue closed" when the library closes
// the tracer's glue at the end. Ends with status 0 when the threads were seen working.
//
//     exiting-process timestamp     several timestamp threads go round as fast as they can: their timing unit answers
//                                   every wait at once
//     exiting-process caller        a thread of its own is inside operations
//     exiting-process idle          no operation is called
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "platform/vorn_tu.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <string_view>
#include <thread>

namespace
{

constexpr int timestamp_threads = 4;
constexpr uint64_t enough_rounds = 5000;

std::atomic<uint64_t> rounds;

int start_timestamp_threads()
{
    for (int i = 0; i < timestamp_threads; ++i)
        if (kel_core_ic_ebcom_start() != 0 || kel_core_ic_ebcom_stop() != 0)
            return 1;
    return 0;
}

void call_operations()
{
    const kel_pcep_config on_hsfp = {.local_mac = {2, 0, 0, 3, 0, 1}, .remote_mac = {2, 0, 0, 2, 0, 1}};
    for (;; ++rounds) {
        kel_core_ic_pcep_start();
        kel_core_ic_pcep_add(7, &on_hsfp);
        kel_core_ic_pcep_rem(7);
    }
}

} // namespace

// Takes the place of the timing-unit client's: an event that the synchroniser ignores, with an INFO record, and waits
// again.
extern "C" int32_t vorn_tu_wait_event(void *, vorn_tu_event **event)
{
    static vorn_tu_event ignored = {5, 0, 0};
    *event = &ignored;
    ++rounds;
    return 0;
}

extern "C" int dlclose(void *handle) noexcept
{
    using close_function = int (*)(void *);
    constexpr std::string_view closed = "glue closed\n";
    Dl_info caller;
    if (dladdr(__builtin_return_address(0), &caller) && strstr(caller.dli_fname, "libkel-core-ic.so") &&
        write(STDOUT_FILENO, closed.data(), closed.size()) < 0)
        _exit(3);
    return reinterpret_cast<close_function>(dlsym(RTLD_NEXT, "dlclose"))(handle);
}

int main(int, char **argv)
{
    const std::string_view kind = argv[1];
    if (kind == "idle")
        return 0;
    if (kind == "timestamp" && start_timestamp_threads() != 0)
        return 1;
    if (kind == "caller")
        std::thread(call_operations).detach();

    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (rounds < enough_rounds) {
        if (std::chrono::steady_clock::now() > patience)
            return 2;
        std::this_thread::yield();
    }
    return 0;
}
