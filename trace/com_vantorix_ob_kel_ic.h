/*
 * The events of provider com_vantorix_ob_kel_ic: what the library does, step by step. Every event carries the same
 * three texts: where the statement stands ("kel_ic_ebcom.cpp:214"), whose statement it is ("EBCOM", "PCEP", "GENERAL"),
 * and what it says.
 *
 * The tracer's headers read this file several times over; it holds nothing but the events.
 */
#undef LTTNG_UST_TRACEPOINT_PROVIDER
#define LTTNG_UST_TRACEPOINT_PROVIDER com_vantorix_ob_kel_ic

#undef LTTNG_UST_TRACEPOINT_INCLUDE
#define LTTNG_UST_TRACEPOINT_INCLUDE "trace/com_vantorix_ob_kel_ic.h"

#if !defined(TRACE_COM_VANTORIX_OB_KEL_IC_H) || defined(LTTNG_UST_TRACEPOINT_HEADER_MULTI_READ)
#define TRACE_COM_VANTORIX_OB_KEL_IC_H

#include "trace/text_event.h"

KEL_TEXT_EVENT_CLASS(com_vantorix_ob_kel_ic)

KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, FN_ENTER, DEBUG_FUNCTION)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, FN_EXIT, DEBUG_FUNCTION)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, FN_PARAM, DEBUG_FUNCTION)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, API_CALL, DEBUG_LINE)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, ERROR, ERR)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, EXCEPTION, ERR)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, INFO, INFO)
KEL_TEXT_EVENT(com_vantorix_ob_kel_ic, LAB, DEBUG)

#endif

#include <lttng/tracepoint-event.h>
