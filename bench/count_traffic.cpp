// Sends frames through the software accelerator under callgrind, through one queue and through 64. Callgrind writes a
// file of counts for each, named "LOAD | 8,000 frames | QUEUES". Ends with status 1 when memory is allocated more often
// than now and then. To be run by bench/check_growth.
#include "softnode/common/facts.h"
#include "softnode/node/node.h"

#include <valgrind/callgrind.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

using namespace softnode;

namespace
{

std::uint64_t allocations = 0;

} // namespace

void *operator new(std::size_t size)
{
    ++allocations;
    void *const memory = std::malloc(size);
    return memory ? memory : throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace
{

constexpr std::uint32_t frames = 8'000;
constexpr std::uint32_t octets = 1500;
constexpr std::uint32_t room = 40'000'000;       // octets of memory
constexpr std::uint64_t time_on_the_line = 1216; // nanoseconds

Mac numbered(std::uint32_t number)
{
    return {2, 0, 0, 2, 0, static_cast<std::uint8_t>(number)};
}

Handle add_scheduler(Node &node, Handle parent)
{
    ork_qos_scheduler_params params{};
    params.parent = pointer_of(parent);
    params.schedulingMode = facts::scheduling_mode;
    params.arbitrationMode = facts::arbitration_mode;
    params.serviceQuantum = 3036;
    params.vsiEthDevId = facts::event_device;
    Handle scheduler = Handle::null;
    node.qos.create_scheduler(params, scheduler);
    return scheduler;
}

// The library's tree: a chain of seven, five schedulers below it, and queues below these.
void build(Node &node, std::uint32_t queues, std::uint32_t rate)
{
    Handle chain = Handle::null;
    for (int level = 0; level < 7; ++level)
        chain = add_scheduler(node, chain);
    std::array<Handle, 5> groups{};
    for (Handle &group : groups)
        group = add_scheduler(node, chain);
    for (std::uint32_t number = 0; number < queues; ++number) {
        ork_ebcom_pcep_path path{};
        const Mac mac = numbered(number);
        std::copy(mac.begin(), mac.end(), path.macAddr);
        Handle queue = Handle::null;
        node.qos.add_queue({facts::queue_mode, rate / queues, room, rate == 0 ? 0U : octets}, facts::queue_kind,
                           groups[number % groups.size()], facts::event_device, queue);
        path.queue_hdl = pointer_of(queue);
        node.create_path(path);
    }
}

// Frames come one at a time, a little more often than the line carries them.
void offer_singly(Node &node, std::uint32_t queues)
{
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        node.offer(numbered(frame % queues), {1, octets});
        node.advance(time_on_the_line - 1);
    }
}

// Frames come together, and leave.
void offer_together(Node &node, std::uint32_t queues)
{
    for (std::uint32_t queue = 0; queue < queues; ++queue)
        node.offer(numbered(queue), {frames / queues, octets});
    node.advance(2 * frames * time_on_the_line);
}

struct load {
    const char *name;
    std::uint32_t rate; // kbit/s of all queues together; 0: unshaped
    void (*carry)(Node &node, std::uint32_t queues);
};

constexpr load loads[] = {
    {"singly", 0, offer_singly},
    {"singly, shaped", 9'000'000, offer_singly},
    {"together", 0, offer_together},
    {"together, shaped", 9'000'000, offer_together},
};

bool count(const load &what, std::uint32_t queues)
{
    Node node;
    build(node, queues, what.rate);
    const std::uint64_t before = allocations;
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    what.carry(node, queues);
    CALLGRIND_STOP_INSTRUMENTATION;
    const std::uint64_t allocated = allocations - before;
    const std::string name = std::string(what.name) + " | 8,000 frames | " + std::to_string(queues);
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    if (allocated <= frames / 8)
        return true;
    std::fprintf(stderr, "%s: %u frames allocate memory %lu times\n", name.c_str(), frames, allocated);
    return false;
}

} // namespace

int main()
{
    bool seldom = true;
    for (const load &each : loads)
        for (const auto queues : {std::uint32_t{1}, static_cast<std::uint32_t>(facts::most_queues)})
            seldom &= count(each, queues);
    return seldom ? 0 : 1;
}
