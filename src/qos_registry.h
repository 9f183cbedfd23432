// The registry of EBCOM's QoS objects: the scheduler index and queue index of each IC port, and the handles of
// schedulers and queues. The handles are the closed libraries'; the registry is this library's only record of them.
// Used by one thread at a time. Nothing here traces.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kel
{

constexpr size_t port_group_count = 5;
constexpr size_t queues_per_group = 8;
constexpr size_t level_count = 7;
constexpr int32_t no_port = -1;

// The IC ports that carry EBCOM, by scheduler index and queue index. Port 0 has a group of its own.
extern const int32_t qos_ports[port_group_count][queues_per_group];

struct queue_slot {
    void *queue; // the companion library's; null: the port has no queue
};

struct port_group {
    void *scheduler; // the driver kit's; null: not there
    queue_slot queues[queues_per_group];
};

extern port_group port_groups[port_group_count];
extern void *level_schedulers[level_count + 1]; // 1 is the top; 0 is never written

// An IC port's indexes.
struct port_index {
    bool known; // false: the port does not carry EBCOM
    uint8_t scheduler;
    uint8_t queue;
};
port_index index_of(int32_t iell_port); // any number; the indexes are valid when `known`

// A port's number in the order in which ports are searched for a destination: by scheduler index, then queue index.
constexpr size_t search_number(size_t scheduler_idx, size_t queue_idx)
{
    return scheduler_idx * queues_per_group + queue_idx;
}

// Sets every handle to null. Removes nothing from the accelerator.
void clear_registry();

} // namespace kel
