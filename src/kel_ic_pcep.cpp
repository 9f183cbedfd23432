// PCEPs, packet communication end points: where a MAC address sits in the node.
#include "call_frame.h"
#include "kel/kel_core_ic_pcep.h"
#include "kel/kel_node_names.h"

#include <cstdlib>

using namespace kel;

namespace
{

constexpr char trace_domain[] = "PCEP";

// 0 until the environment told it; then kept for the life of the process, across every start and stop.
uint8_t own_mp_id;

uint8_t own_mp_id_get()
{
    if (own_mp_id)
        return own_mp_id;
    const char *text = getenv("MPID");
    if (!text) {
        TRACE(ERROR, "Failed to get environment variable MPID");
        return own_mp_id;
    }
    own_mp_id = static_cast<uint8_t>(strtol(text, nullptr, 10));
    TRACE(INFO, "MPID = %s (%d)", text, own_mp_id);
    return own_mp_id;
}

// Bit 7 of byte 2 marks a CPU address of any MP; only without it the own MP id has to be known.
bool is_cpu(const uint8_t *mac)
{
    return mac[3] == 0 && ((mac[2] & 0x80) != 0 || mac[2] == own_mp_id_get());
}

} // namespace

extern "C" uint32_t kel_ic_pcep_get_location_and_type_from_branch(const uint8_t *mac, uint32_t *location,
                                                                  uint32_t *type)
{
    struct branch {
        uint32_t location;
        uint32_t type;
    } branch{KEL_LOCATION_EIOA, 0};

    if (mac[3] == 2)
        branch = {KEL_LOCATION_OB, 2};
    else if (mac[3] == 3)
        branch = {KEL_LOCATION_HSFP, 2};
    else if (is_cpu(mac))
        branch = {KEL_LOCATION_CPU, 1};

    *location = branch.location;
    *type = branch.type;
    return KEL_RC_OK;
}
