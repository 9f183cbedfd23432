// The EBCOM Ethernet interface on the accelerator's event device. The driver kit alone knows whether there is one.
#include "call_frame.h"
#include "kel/kel_core_ic_ebcom.h"

using namespace kel;

namespace
{
constexpr char trace_domain[] = "EBCOM";
}

extern "C" uint32_t kel_core_ic_ebcom_interface_create(kel_vsi_t *vsi, uint16_t *out)
{
    TRACE_FUNCTION();

    kel_attach_info attach{};
    uint16_t eth_dev_id = 0;
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    if (const uint32_t rc = ebcom_event_device(HERE, eth_dev_id))
        return rc;

    TRACE(API_CALL, "ork_ebcom_interface_create(eth_dev_id=%d)", eth_dev_id);
    if (const ork_rc rc = ork_ebcom_interface_create(attach.ork_handle, eth_dev_id))
        return report_ork(HERE, rc, "ork_ebcom_interface_create");

    TRACE(API_CALL, "kel_init_eventdev_vsi_ebcom_get()");
    if (const uint32_t rc = kel_init_eventdev_vsi_ebcom_get(vsi)) // the interface stays
        return report(HERE, rc, "kel_init_eventdev_vsi_ebcom_get");
    *out = 0;
    return KEL_RC_OK;
}

extern "C" uint32_t kel_core_ic_ebcom_interface_delete()
{
    TRACE_FUNCTION();

    kel_attach_info attach{};
    uint16_t eth_dev_id = 0;
    if (const uint32_t rc = attach_accelerator(HERE, attach))
        return rc;
    if (const uint32_t rc = ebcom_event_device(HERE, eth_dev_id))
        return rc;

    TRACE(API_CALL, "ork_ebcom_interface_delete(eth_dev_id=%d)", eth_dev_id);
    if (const ork_rc rc = ork_ebcom_interface_delete(attach.ork_handle, eth_dev_id))
        return report_ork(HERE, rc, "ork_ebcom_interface_delete");
    return KEL_RC_OK;
}
