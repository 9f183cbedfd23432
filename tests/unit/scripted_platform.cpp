#include "scripted_platform.h"

#include "platform/kei_util.h"
#include "platform/qol_ng.h"
#include "script.h"

#include <atomic>
#include <cstring>
#include <mutex>

using scripted::keep_record;
using scripted::logged_result;
using scripted::text;

namespace scripted
{
namespace
{

// What a refusal leaves in an output: the library must not keep it.
void *const rubbish = reinterpret_cast<void *>(0xDEAD);

std::atomic<uint32_t> schedulers;
std::atomic<uint32_t> queues;
ork_qos_queue queue_record = {0, 0, ORK_QOS_QUEUE_UNSHAPED};

std::mutex restart_mutex;
restart_request restart;

void *numbered(uint64_t base, uint32_t n)
{
    return reinterpret_cast<void *>(base + n);
}

std::string mac_text(const uint8_t *mac)
{
    return text("%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

// The same text for the same code, valid for good.
template <typename Code> const char *code_text(const char *format, Code rc)
{
    thread_local char buffer[32];
    snprintf(buffer, sizeof buffer, format, rc);
    return buffer;
}

} // namespace

void *scheduler(uint32_t n)
{
    return numbered(0x5000, n);
}

void *queue(uint32_t n)
{
    return numbered(0x9000, n);
}

void set_queue_record(const ork_qos_queue &record)
{
    queue_record = record;
}

[[gnu::noinline]] void soil_stack()
{
    volatile uint8_t stack[4096];
    for (volatile uint8_t &octet : stack)
        octet = 0xA5;
}

restart_request last_restart_request()
{
    const std::lock_guard lock(restart_mutex);
    return restart;
}

} // namespace scripted

// ---- The driver kit ----

extern "C" ork_rc ork_syshandle_get(uint32_t a, uint32_t b, void **sys_handle)
{
    const std::string before = *sys_handle ? text(", %p", *sys_handle) : "";
    *sys_handle = scripted::sys_handle;
    return static_cast<ork_rc>(logged_result(__func__, text("%u, %u", a, b) + before));
}

extern "C" const char *ork_sys_status_get(void *sys_handle, ork_rc rc)
{
    logged_result(__func__, text("%s%d", sys_handle == scripted::sys_handle ? "" : "wrong handle, ", rc));
    return scripted::code_text("status %d", rc);
}

extern "C" ork_rc ork_ebcom_global_config_set(void *ork, const ork_ebcom_global_config *config)
{
    keep_record(__func__, config, sizeof *config);
    return static_cast<ork_rc>(logged_result(__func__, scripted::ork_text(ork)));
}

extern "C" ork_rc ork_ebcom_interface_create(void *ork, uint16_t eth_dev_id)
{
    return static_cast<ork_rc>(logged_result(__func__, text("%s, %u", scripted::ork_text(ork).c_str(), eth_dev_id)));
}

extern "C" ork_rc ork_ebcom_interface_delete(void *ork, uint16_t eth_dev_id)
{
    return static_cast<ork_rc>(logged_result(__func__, text("%s, %u", scripted::ork_text(ork).c_str(), eth_dev_id)));
}

extern "C" ork_rc ork_ebcom_timestamp_offset_set(void *ork, int64_t offset)
{
    return static_cast<ork_rc>(logged_result(__func__, text("%s, %ld", scripted::ork_text(ork).c_str(), offset)));
}

static const void *path_place;

const void *scripted::last_path_place()
{
    return path_place;
}

static ork_rc path_call(const char *function, const void *ork, const ork_ebcom_pcep_path *path)
{
    path_place = path;
    keep_record(function, path, sizeof *path);
    return static_cast<ork_rc>(logged_result(
        function, text("%s, %s, type %d, eioa %u, queue %p", scripted::ork_text(ork).c_str(),
                       scripted::mac_text(path->macAddr).c_str(), path->pcepType, path->eioaPort, path->queue_hdl)));
}

extern "C" ork_rc ork_ebcom_pcep_path_create(void *ork, const ork_ebcom_pcep_path *path)
{
    return path_call(__func__, ork, path);
}

extern "C" ork_rc ork_ebcom_pcep_path_delete(void *ork, const ork_ebcom_pcep_path *path)
{
    return path_call(__func__, ork, path);
}

extern "C" ork_rc ork_qos_scheduler_create(void *ork, const ork_qos_scheduler_params *params, uint32_t zero,
                                           void **scheduler)
{
    keep_record(__func__, params, sizeof *params);
    const int64_t rc =
        logged_result(__func__, text("%s, parent %p, %u", scripted::ork_text(ork).c_str(), params->parent, zero));
    *scheduler = rc ? scripted::rubbish : scripted::scheduler(++scripted::schedulers);
    return static_cast<ork_rc>(rc);
}

extern "C" ork_rc ork_qos_scheduler_delete(void *ork, void *scheduler)
{
    return static_cast<ork_rc>(logged_result(__func__, text("%s, %p", scripted::ork_text(ork).c_str(), scheduler)));
}

extern "C" ork_rc ork_qos_queue_get(void *ork, void *queue, ork_qos_queue *record)
{
    keep_record(__func__, record, sizeof *record);
    *record = scripted::queue_record;
    return static_cast<ork_rc>(logged_result(__func__, text("%s, %p", scripted::ork_text(ork).c_str(), queue)));
}

// ---- The companion library ----

extern "C" uint32_t kel_init_attach(kel_attach_info *attach)
{
    keep_record(__func__, attach, sizeof *attach);
    const auto rc = static_cast<uint32_t>(logged_result(__func__, ""));
    if (rc)
        return rc;
    attach->sys_handle = scripted::sys_handle;
    attach->ehsfp_target = scripted::ehsfp_target;
    attach->ork_handle = scripted::ork_handle;
    return 0;
}

extern "C" uint32_t kel_init_eventdev_dev_id_ebcom_get(uint16_t *eth_dev_id)
{
    const auto rc = static_cast<uint32_t>(logged_result(__func__, text("%u", *eth_dev_id)));
    if (!rc)
        *eth_dev_id = scripted::eth_dev_id;
    return rc;
}

extern "C" uint32_t kel_init_eventdev_vsi_ebcom_get(kel_vsi_t *vsi)
{
    const auto rc = static_cast<uint32_t>(logged_result(__func__, ""));
    if (!rc)
        *vsi = scripted::vsi;
    return rc;
}

extern "C" uint32_t kel_init_qos_queue_add(const kel_init_qos_queue_params *params, uint32_t five, void *scheduler,
                                           uint16_t eth_dev_id, void **queue)
{
    keep_record(__func__, params, sizeof *params);
    const auto rc = static_cast<uint32_t>(
        logged_result(__func__, text("{%u, %u, %u, %u}, %u, %p, %u", params->mode, params->rate, params->threshold,
                                     params->bucket_size, five, scheduler, eth_dev_id)));
    *queue = rc ? scripted::rubbish : scripted::queue(++scripted::queues);
    return rc;
}

extern "C" uint32_t kel_init_qos_queue_rem(void *queue)
{
    return static_cast<uint32_t>(logged_result(__func__, text("%p", queue)));
}

// ---- The utility library ----

extern "C" const char *kei_util_init_rc_str_get(uint32_t rc)
{
    logged_result(__func__, text("%u", rc));
    return scripted::code_text("code %u", rc);
}

extern "C" char *macAddr2str(char *text, const uint8_t *mac)
{
    const std::string written = scripted::mac_text(mac);
    logged_result(__func__, written);
    return strcpy(text, written.c_str());
}

// ---- The node-restart service ----

extern "C" int32_t qol_ng_restart_request_line_and_file(uint32_t line, const char *file, uint32_t one,
                                                        const char *reason, uint32_t zero, void *null)
{
    {
        const std::lock_guard lock(scripted::restart_mutex);
        scripted::restart = {line, file, one, reason, zero, null};
    }
    return static_cast<int32_t>(logged_result(__func__, reason));
}
