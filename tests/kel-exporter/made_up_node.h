// What is known of a node that is not there.
#pragma once

#include "kel-exporter/nodes/known_node.h"
#include "notation/json.h"

#include <string>

namespace kel_exporter
{

// When it was read: its timestamp was written 2.5 seconds before, as its own clock says.
inline const watch_clock::time_point read_at{std::chrono::seconds(1000)};

inline known_node made_up_node(const std::string &name)
{
    const char *state = R"({
        "real": 77500000000, "virtual": 0, "since": 70000000000, "timestamp": 75000000000,
        "operations": [{"operation": "kel_core_ic_pcep_add", "code": 0, "count": 4},
                       {"operation": "kel_core_ic_pcep_add", "code": 5, "count": 1}],
        "schedulers": [{"name": "line", "above": null}, {"name": "RLU1", "above": "line"}],
        "ebcom": {"EBCOM global statistics": {
            "frames_received": 18446744073709551615, "octets_received": 1001, "frames_sent": 1002, "octets_sent": 1003,
            "frames_dropped": 1004, "octets_dropped": 1005, "paths": 2, "pceps": 1, "groups": 3}},
        "queues": [
            {"port": 6, "name": "RLU1P", "scheduler": "RLU1", "rate": 100000, "burst": 65536, "threshold": 1048576, "made": 1,
             "counters": {"mem_blks_in_use": 2, "pkts_out_standing": 3, "pkts_dropped": 4, "pkts_tx": 5, "pkts_rx": 6,
                          "octets_dropped": 7, "octets_tx": 8, "octets_rx": 9, "max_burst_size": 0, "current_burst_size": 0}},
            {"port": 7, "name": "RLU1Q", "scheduler": "RLU1", "rate": null, "burst": null, "threshold": null, "made": 2,
             "counters": null}],
        "pceps": [
            {"id": 9, "location": "HSFP", "made": 1, "counters": {
                "PCEP inbound statistics": {"frames_received": 10, "octets_received": 11, "frames_dropped": 12, "octets_dropped": 13},
                "PCEP outbound statistics": {"frames_sent": 14, "octets_sent": 15}}}],
        "groups": [{"id": 300, "members": [9]}]})";
    return {.name = name,
            .up = true,
            .why = "",
            .file = "/etc/kelctl/" + name + ".toml",
            .read = read_at,
            .state = std::make_shared<const notation::document>(notation::read_json(state))};
}

} // namespace kel_exporter
