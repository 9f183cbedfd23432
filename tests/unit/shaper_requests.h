// Shaper requests as the tests make them, and the IC ports they are made on.
//
//     scheduler_tree_up();
//     EXPECT_EQ(add(shaped(6, 1000, 64)), 0U);
//     EXPECT_EQ(queue_of(peer), scripted::queue(1));
#pragma once

#include "kel/kel_core_ic_ebcom.h"

#include <array>
#include <cstdint>
#include <string>

using mac_address = std::array<uint8_t, 6>;

inline constexpr mac_address peer = {0x02, 0x00, 0x00, 0x02, 0x00, 0x01};
inline constexpr mac_address second_peer = {0x02, 0x00, 0x00, 0x02, 0x00, 0x02};
inline constexpr mac_address third_peer = {0x02, 0x00, 0x00, 0x02, 0x00, 0x03};

struct qos_port {
    int32_t iell_port;
    uint32_t group;
};

// The ports with QoS, in the order in which a destination is searched: by group, and within it by queue.
inline constexpr qos_port qos_ports[] = {
    {6, 0},  {7, 0},  {19, 0}, {20, 0}, {21, 0}, {22, 0}, {23, 0}, {24, 0}, //
    {8, 1},  {9, 1},  {25, 1}, {26, 1}, {27, 1}, {28, 1}, {29, 1}, {30, 1}, //
    {10, 2}, {11, 2}, {31, 2}, {32, 2}, {33, 2}, {34, 2}, {35, 2}, {36, 2}, //
    {12, 3}, {13, 3}, {37, 3}, {38, 3}, {39, 3}, {40, 3}, {41, 3}, {42, 3}, //
    {0, 4},
};

// The scheduler of a port group in the first scheduler tree: the seven levels are created before the groups.
void *group_scheduler(uint32_t group);

// Builds the scheduler tree and forgets how.
void scheduler_tree_up();

kel_ebcom_path_config unshaped(int32_t iell_port, const mac_address &destination = peer);
kel_ebcom_path_config shaped(int32_t iell_port, uint32_t rate, uint32_t burst, uint32_t threshold = 0);

// The operations, with a path record that nobody looks at.
uint32_t add(const kel_ebcom_path_config &config);
uint32_t remove(const kel_ebcom_path_config &config);

// The result of a look-up. A failed one leaves what was in the handle, `untouched`.
inline void *const untouched = reinterpret_cast<void *>(0x0DD);
void *queue_of(const mac_address &destination);
void *scheduler_of(const mac_address &destination);

// A scheduler tree and a port with queue(1), which the driver kit describes like this; its one path is the peer's.
inline constexpr ork_qos_queue unshaped_queue = {0, 0, ORK_QOS_QUEUE_UNSHAPED};
void port_in_use(int32_t iell_port, const ork_qos_queue &queue);

// The transcript of an add that finds queue(1) and compares it with the request, up to the comparison's result.
std::string queue_compared(const ork_qos_queue &queue, const kel_ebcom_path_config &config);

// A path record full of rubbish, to see what is written into it.
ork_ebcom_pcep_path rubbish_path();
bool same(const ork_ebcom_pcep_path &one, const ork_ebcom_pcep_path &other);
