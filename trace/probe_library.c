/*
 * The probes of one provider: what the tracer calls to record an event. Linked to the tracer, so it loads only where
 * the tracer is installed; the event library opens it.
 *
 * Compiled once for each provider: KEL_PROVIDER_HEADER comes from the build.
 */
#define LTTNG_UST_TRACEPOINT_CREATE_PROBES
#include KEL_PROVIDER_HEADER
