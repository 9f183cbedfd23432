// What every operation needs: trace statements, the attachment to the accelerator, and reports of failed calls.
//
// A trace statement tests its event's flag and does nothing more while the event is disabled: none of its arguments is
// evaluated then. A report says why an outside call failed, in one line, and returns the code that the operation
// returns, so that an operation reads
//
//     TRACE(API_CALL, "ork_ebcom_interface_create(eth_dev_id=%d)", eth_dev_id);
//     if (const ork_rc rc = ork_ebcom_interface_create(attach.ork_handle, eth_dev_id))
//         return report_ork(HERE, rc, "ork_ebcom_interface_create");
//
// A module includes this header once and says whose its records are: constexpr char trace_domain[] = "EBCOM";
// Never trace from inside a lambda: its function has no name.
#pragma once

#include "kel/kel_trace.h"
#include "platform/kei_util.h"
#include "platform/kel_init.h"
#include "platform/ork.h"
#include "trace/com_vantorix_ob_kel_ic.h"
#include "trace/com_vantorix_ob_kel_init.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace kel
{

// The place in the source that a record names. Its members are constants, so it costs nothing until a record is made.
struct call_site {
    const char *location; // "kel_ic_ebcom.cpp:214"
    const char *domain;   // "EBCOM", "PCEP" or "GENERAL"
    const char *function;

    constexpr call_site general() const
    {
        return {location, "GENERAL", function};
    }
};

#define HERE (::kel::call_site{__FILE_NAME__ ":" lttng_ust_stringify(__LINE__), trace_domain, __func__})

// At process exit the tracer's glue clears the function pointers that a thread may be about to call. The first record
// therefore adds a user to the glue that is never removed. Two threads may add one each: any number keeps it open.
[[gnu::cold]] inline void keep_trace_glue()
{
    static std::atomic<bool> kept;
    if (kept.load())
        return;
    std::atomic_ref(lttng_ust_tracepoint_registered).fetch_add(1);
    kept.store(true);
}

// The part of a statement that runs for an enabled event. It is out of line, because the tracer's macro is large and
// would be copied into every function that traces. With GCC that is a third more code, with Clang a quarter more
// instructions of a path's add and remove (docs/decisions, 10).
#define FIRING(provider, event)                                                                                        \
    [[gnu::cold]] inline void fire_##provider##_##event(const char *location, const char *domain, const char *message) \
    {                                                                                                                  \
        keep_trace_glue();                                                                                             \
        lttng_ust_do_tracepoint(provider, event, location, domain, message);                                           \
    }
FIRING(com_vantorix_ob_kel_ic, FN_ENTER)
FIRING(com_vantorix_ob_kel_ic, FN_EXIT)
FIRING(com_vantorix_ob_kel_ic, FN_PARAM)
FIRING(com_vantorix_ob_kel_ic, API_CALL)
FIRING(com_vantorix_ob_kel_ic, ERROR)
FIRING(com_vantorix_ob_kel_ic, EXCEPTION)
FIRING(com_vantorix_ob_kel_ic, INFO)
FIRING(com_vantorix_ob_kel_ic, LAB)
FIRING(com_vantorix_ob_kel_init, EXCEPTION)
#undef FIRING

// The statement behind all others: an event of a provider, fired for a site.
#define FIRE(provider, event, site, ...)                                                                               \
    do {                                                                                                               \
        if (lttng_ust_tracepoint_enabled(provider, event)) {                                                           \
            const ::kel::call_site from = site;                                                                        \
            ::kel::fire_##provider##_##event(from.location, from.domain,                                               \
                                             kel_trace_internal_format_str("%s(): ", from.function, __VA_ARGS__));     \
        }                                                                                                              \
    } while (false)

// TRACE names the function that it is written in, TRACE_AT the caller whose site was passed.
#define TRACE(event, ...) TRACE_AT(HERE, event, __VA_ARGS__)
#define TRACE_AT(site, event, ...) FIRE(com_vantorix_ob_kel_ic, event, site, __VA_ARGS__)

// Fires FN_ENTER here, and FN_EXIT whenever the block is left.
#define TRACE_FUNCTION() const ::kel::function_frame traced_function(HERE)

class function_frame
{
public:
    explicit function_frame(call_site site) : site_(site)
    {
        if (lttng_ust_tracepoint_enabled(com_vantorix_ob_kel_ic, FN_ENTER))
            fire_com_vantorix_ob_kel_ic_FN_ENTER(site_.location, site_.domain,
                                                 kel_trace_internal_format_str("%s()", site_.function, no_body));
    }

    ~function_frame()
    {
        if (lttng_ust_tracepoint_enabled(com_vantorix_ob_kel_ic, FN_EXIT))
            fire_com_vantorix_ob_kel_ic_FN_EXIT(site_.location, site_.domain,
                                                kel_trace_internal_format_str("%s()", site_.function, no_body));
    }

    function_frame(const function_frame &) = delete;
    function_frame &operator=(const function_frame &) = delete;

private:
    static constexpr const char *no_body = nullptr;

    const call_site site_;
};

// ---- Reports of what failed ----

// A call of the companion library, or a step of this library, failed with one of the companion library's codes. Returns
// that code.
inline uint32_t report(call_site site, uint32_t rc, const char *what)
{
    FIRE(com_vantorix_ob_kel_init, EXCEPTION, site.general(), "%s, %s", kei_util_init_rc_str_get(rc), what);
    return rc;
}

// A driver-kit call failed. Its code is in the record only: returns KEL_RC_FAILED for each of them.
inline uint32_t report_ork(call_site site, ork_rc rc, const char *callee)
{
    void *sys_handle = nullptr;
    ork_syshandle_get(0, 1, &sys_handle);
    FIRE(com_vantorix_ob_kel_init, EXCEPTION, site.general(), "0x%x - %s, %s", rc, ork_sys_status_get(sys_handle, rc),
         callee);
    return KEL_RC_FAILED;
}

// A system call failed; errno must still be the one that it set. Returns KEL_RC_FAILED.
inline uint32_t report_system(call_site site, int result, const char *call)
{
    FIRE(com_vantorix_ob_kel_init, EXCEPTION, site.general(), "%s => rc=%d, errno=%s(%d)", call, result,
         strerror(errno), errno);
    return KEL_RC_FAILED;
}

// ---- Texts made for a record ----

// The text of a MAC address, of 6 octets. As an argument of a trace statement it is made only for an enabled event.
struct mac_text {
    explicit mac_text(const uint8_t *mac)
    {
        macAddr2str(text, mac);
    }

    char text[50] = {};
};

// ---- Steps that most operations begin with ----

// Attaches to the accelerator. Returns a code of the companion library. On success attach.ork_handle is the first
// argument of driver-kit calls; on failure `attach` is not valid.
inline uint32_t attach_accelerator(call_site site, kel_attach_info &attach)
{
    TRACE_AT(site, API_CALL, "kel_init_attach()");
    if (const uint32_t rc = kel_init_attach(&attach))
        return report(site, rc, "kel_init_attach");
    return KEL_RC_OK;
}

// Reads the Ethernet device identifier of the event device that EBCOM uses. Returns a code of the companion library;
// the identifier is valid on success only.
inline uint32_t ebcom_event_device(call_site site, uint16_t &eth_dev_id)
{
    TRACE_AT(site, API_CALL, "kel_init_eventdev_dev_id_ebcom_get()");
    if (const uint32_t rc = kel_init_eventdev_dev_id_ebcom_get(&eth_dev_id))
        return report(site, rc, "kel_init_eventdev_dev_id_ebcom_get");
    return KEL_RC_OK;
}

} // namespace kel
