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

/* How a new scheduler has to serve its children: the one pair of modes that EBCOM uses, deficit round robin by octets. */
constexpr std::uint32_t scheduling_mode = 11;
constexpr std::uint32_t arbitration_mode = 7;

/* Octets. A service quantum below it, the shortest frame of Ethernet, counts as this much. */
constexpr std::uint32_t least_quantum = 64;

constexpr std::int32_t highest_pcep_type = 2;

/* PCEPs and multicast groups are numbered from 1 and share the numbers. */
constexpr std::uint32_t highest_pcep_id = 511;

/* kbit/s. The line that all schedulers share. */
constexpr std::uint64_t line_rate = 10'000'000;

/* Octets that the line carries in front of each frame and behind it. */
constexpr std::uint32_t preamble_octets = 8;
constexpr std::uint32_t gap_octets = 12;

/* Octets, with the check sequence. */
constexpr std::uint32_t longest_frame = 65'535;

/* Octets of a frame beside those that the MTU counts: header 14, VLAN tag 4, check sequence 4. */
constexpr std::uint32_t frame_overhead = 22;

/* A queue's memory is counted in blocks; a frame takes as many as it begins. */
constexpr std::uint32_t block_octets = 256;

constexpr std::int32_t timing_domain = 0;

/* Table sizes. Timing-unit connections have no limit: there is no call that closes one. */
constexpr std::size_t most_schedulers = 64;
constexpr std::size_t most_queues = 64;
constexpr std::size_t most_paths = 65'536;
constexpr std::size_t most_groups = 30;
constexpr std::size_t most_members = 16;

/* What the timing unit reports when the node is switched on. */
constexpr std::int64_t first_cycles = 40;
constexpr std::uint32_t first_frequency = 250'000;

} // namespace softnode::facts

#endif
