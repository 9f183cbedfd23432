#include "trace/tap.h"

#include "trace/com_vantorix_ob_kel_ic.h"
#include "trace/com_vantorix_ob_kel_init.h"

#include <dlfcn.h>

#include <utility>

namespace trace
{
namespace
{

using register_function = int (*)(const char *, const char *, void (*)(void), void *, const char *);
using unregister_function = int (*)(const char *, const char *, void (*)(void), void *);

listener current_listener;

constexpr const lttng_ust_tracepoint *events[] = {
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___FN_ENTER,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___FN_EXIT,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___FN_PARAM,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___API_CALL,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___ERROR,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___EXCEPTION,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___INFO,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_ic___LAB,
    &lttng_ust_tracepoint_com_vantorix_ob_kel_init___EXCEPTION,
};

// The tracer calls this for every fired record; `event` is what the probe was registered with.
void probe(void *event, const char *location, const char *domain, const char *message)
{
    const auto *fired = static_cast<const lttng_ust_tracepoint *>(event);
    current_listener({fired->provider_name, fired->event_name, location, domain, message});
}

void (*const probe_address)(void) = reinterpret_cast<void (*)(void)>(probe);

void *data_of(const lttng_ust_tracepoint *event)
{
    return const_cast<lttng_ust_tracepoint *>(event);
}

// A function of the tracer, null where it is not installed.
template <typename Function> Function tracer_function(const char *name)
{
    static void *const tracer = dlopen(LTTNG_UST_TRACEPOINT_LIB_SONAME, RTLD_NOW);
    return tracer ? reinterpret_cast<Function>(dlsym(tracer, name)) : nullptr;
}

} // namespace

bool listen(listener on_record)
{
    const auto add = tracer_function<register_function>("lttng_ust_tracepoint_provider_register");
    if (!add)
        return false;
    current_listener = std::move(on_record);
    for (const auto *event : events)
        add(event->provider_name, event->event_name, probe_address, data_of(event), event->signature);
    return true;
}

void stop_listening()
{
    const auto remove = tracer_function<unregister_function>("lttng_ust_tracepoint_provider_unregister");
    if (!remove)
        return;
    for (const auto *event : events)
        remove(event->provider_name, event->event_name, probe_address, data_of(event));
    current_listener = nullptr;
}

} // namespace trace
