/*
 * facts.h - what kind of node this is: its identity and its limits. Nothing here changes while it runs.
 */
#ifndef SOFTNODE_FACTS_H
#define SOFTNODE_FACTS_H

#include <cstddef>
#include <cstdint>

namespace softnode::facts
{

/* The EBCOM event device: the only Ethernet device that schedulers, queues and the interface may sit on. */
constexpr std::uint16_t event_device = 7;
constexpr std::uint16_t event_device_vsi = 258;

/* What a new queue has to be made from: the one mode and the one kind of queue that EBCOM uses. */
constexpr std::uint32_t queue_mode = 1;
constexpr std::uint32_t queue_kind = 5;

constexpr std::int32_t highest_pcep_type = 2;
constexpr std::int32_t timing_domain = 0;

/* Table sizes. Timing-unit connections have no limit: there is no call that closes one. */
constexpr std::size_t most_schedulers = 64;
constexpr std::size_t most_queues = 64;
constexpr std::size_t most_paths = 65'536;

/* What the timing unit reports when the node is switched on. */
constexpr std::int64_t first_cycles = 40;
constexpr std::uint32_t first_frequency = 250'000;

} // namespace softnode::facts

#endif
