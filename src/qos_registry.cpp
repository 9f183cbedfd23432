// The table of ports and its reverse; the state is static and zero at first.
#include "qos_registry.h"

#include <cstring>

using namespace kel;

constexpr int32_t kel::qos_ports[port_group_count][queues_per_group] = {
    {6, 7, 19, 20, 21, 22, 23, 24},
    {8, 9, 25, 26, 27, 28, 29, 30},
    {10, 11, 31, 32, 33, 34, 35, 36},
    {12, 13, 37, 38, 39, 40, 41, 42},
    {0, no_port, no_port, no_port, no_port, no_port, no_port, no_port},
};

port_group kel::port_groups[port_group_count];
void *kel::level_schedulers[level_count + 1];

namespace
{

constexpr int32_t highest_qos_port = 42;

// qos_ports turned round: an IC port's indexes.
constexpr auto port_indexes = [] {
    struct {
        port_index of[highest_qos_port + 1];
    } indexes{};
    for (uint8_t group = 0; group < port_group_count; ++group)
        for (uint8_t queue = 0; queue < queues_per_group; ++queue)
            if (const int32_t port = qos_ports[group][queue]; port != no_port)
                indexes.of[port] = {true, group, queue};
    return indexes;
}();

} // namespace

port_index kel::index_of(int32_t iell_port)
{
    if (iell_port < 0 || iell_port > highest_qos_port)
        return {};
    return port_indexes.of[iell_port];
}

void kel::clear_registry()
{
    memset(port_groups, 0, sizeof port_groups);
    memset(level_schedulers, 0, sizeof level_schedulers);
}
