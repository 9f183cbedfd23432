/*
 * What all nine events have in common: three texts, in this order. Part of the provider headers only.
 */
#ifndef TRACE_TEXT_EVENT_H
#define TRACE_TEXT_EVENT_H

#include <lttng/tracepoint.h>

#define KEL_TEXT_ARGS LTTNG_UST_TP_ARGS(const char *, location, const char *, domain, const char *, message)

#define KEL_TEXT_FIELDS                                                                                                \
    LTTNG_UST_TP_FIELDS(lttng_ust_field_string(location, location) lttng_ust_field_string(domain, domain)              \
                            lttng_ust_field_string(message, message))

#define KEL_TEXT_EVENT_CLASS(provider) LTTNG_UST_TRACEPOINT_EVENT_CLASS(provider, text, KEL_TEXT_ARGS, KEL_TEXT_FIELDS)

/* `level` is the tracer's log level without its prefix, for `lttng enable-event --loglevel`. */
#define KEL_TEXT_EVENT(provider, event, level)                                                                         \
    LTTNG_UST_TRACEPOINT_EVENT_INSTANCE(provider, text, provider, event, KEL_TEXT_ARGS)                                \
    LTTNG_UST_TRACEPOINT_LOGLEVEL(provider, event, LTTNG_UST_TRACEPOINT_LOGLEVEL_##level)

#endif
