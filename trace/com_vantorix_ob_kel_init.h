/*
 * The event of provider com_vantorix_ob_kel_init: a call into another library, or a step of our own, that failed.
 *
 * The tracer's headers read this file several times over; it holds nothing but the event.
 */
#undef LTTNG_UST_TRACEPOINT_PROVIDER
#define LTTNG_UST_TRACEPOINT_PROVIDER com_vantorix_ob_kel_init

#undef LTTNG_UST_TRACEPOINT_INCLUDE
#define LTTNG_UST_TRACEPOINT_INCLUDE "trace/com_vantorix_ob_kel_init.h"

#if !defined(TRACE_COM_VANTORIX_OB_KEL_INIT_H) || defined(LTTNG_UST_TRACEPOINT_HEADER_MULTI_READ)
#define TRACE_COM_VANTORIX_OB_KEL_INIT_H

#include "trace/text_event.h"

KEL_TEXT_EVENT_CLASS(com_vantorix_ob_kel_init)

KEL_TEXT_EVENT(com_vantorix_ob_kel_init, EXCEPTION, ERR)

#endif

#include <lttng/tracepoint-event.h>
