#include "trace/tap.h"

#include "trace/com_vantorix_ob_kel_ic.h"
#include "trace/com_vantorix_ob_kel_init.h"

#include <dlfcn.h>

#include <mutex>
#include <utility>

namespace trace
{
namespace
{

using register_function = int (*)(const char *, const char *, void (*)(void), void *, const char *);

std::mutex mutex; // guards the listener, and orders the records of all threads
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
    const std::lock_guard alone(mutex);
    if (current_listener)
        current_listener({fired->provider_name, fired->event_name, location, domain, message});
}

void (*const probe_address)(void) = reinterpret_cast<void (*)(void)>(probe);

void *data_of(const lttng_ust_tracepoint *event)
{
    return const_cast<lttng_ust_tracepoint *>(event);
}

// They stay registered: a thread may be on its way into one at any time. False where the tracer is not installed.
bool register_probes()
{
    void *const tracer = dlopen(LTTNG_UST_TRACEPOINT_LIB_SONAME, RTLD_NOW);
    if (!tracer)
        return false;
    const auto add = reinterpret_cast<register_function>(dlsym(tracer, "lttng_ust_tracepoint_provider_register"));
    if (!add)
        return false;
    for (const auto *event : events)
        add(event->provider_name, event->event_name, probe_address, data_of(event), event->signature);
    return true;
}

} // namespace

bool listen(listener on_record)
{
    static const bool installed = register_probes();
    if (!installed)
        return false;
    const std::lock_guard alone(mutex);
    current_listener = std::move(on_record);
    return true;
}

void stop_listening()
{
    const std::lock_guard alone(mutex);
    current_listener = nullptr;
}

} // namespace trace
