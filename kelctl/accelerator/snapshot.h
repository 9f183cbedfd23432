// What the accelerator holds, read from the software accelerator's document. The document itself comes from
// software_accelerator.h; its layout is decided in softnode/views/snapshot.cpp. Handles connect the objects: a queue
// names its scheduler, a path its queue.
//
//     const snapshot node = read_snapshot(*accelerator_snapshot());
//     for (const snapshot::queue &queue : node.queues)
//         show(queue.self, queue.rate);
#pragma once

#include "kelctl/values/mac_address.h"
#include "notation/document.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace kelctl
{

using handle = uint64_t; // as the libraries pass it in a pointer; 0 is none

struct snapshot {
    struct scheduler {
        handle self;
        handle parent; // 0: under the root
    };
    struct queue {
        handle self;
        handle scheduler;
        uint32_t rate;      // kbit/s
        uint32_t burst;     // octets
        uint32_t threshold; // octets
        bool shaped;
    };
    struct path {
        mac_address mac;
        handle queue; // 0: its queue was removed
    };
    struct pcep {
        uint32_t id;
        uint32_t remote_id;
        mac_address local_mac;
        mac_address remote_mac;
        uint16_t vlan;
        uint8_t priority;
        bool bound; // to the EHSFP
    };
    struct group {
        uint32_t id;
        std::vector<uint32_t> members; // in the order of their adding
    };
    struct interface_identity {
        uint16_t eth_dev_id;
        uint16_t vsi;
    };
    struct global_parameters {
        uint16_t mtu; // octets
        uint16_t ether_type;
        std::array<uint8_t, 2> settings;
    };

    std::vector<scheduler> schedulers; // in the order of their creation, as are the queues
    std::vector<queue> queues;
    std::vector<path> paths; // in the order of their addresses
    std::vector<pcep> pceps; // in the order of their creation, as are the groups
    std::vector<group> groups;
    std::optional<interface_identity> interface;
    std::optional<global_parameters> globals;
    std::optional<int64_t> timestamp_offset;

    // Nothing that a bring-up makes and a take-down removes. Parameters and the offset cannot be taken back.
    bool empty() const;
};

// "0x5c00000001" or null
handle handle_in(const notation::document &value);

// Throws notation::document_error when the document is not as the software accelerator makes it.
snapshot read_snapshot(const notation::document &all);

// The same of its list of queues alone.
std::vector<snapshot::queue> read_queues(const notation::document &list);

} // namespace kelctl
