/**
 * @file kel_trace.h
 * The message formatter behind every trace record, and the fatal path.
 *
 *     puts(kel_trace_internal_format_str("%s(): ", "bring_up", "port=%d", 6));      // bring_up(): port=6
 */
#ifndef KEL_TRACE_H
#define KEL_TRACE_H

#include <stdarg.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/**
 * Formats a message into the calling thread's buffer of 1024 bytes. No memory is allocated.
 *
 * @param prefix_format takes one string, the prefix argument; at most 255 characters of the result are kept
 * @param prefix_arg    null: no prefix, and prefix_format is not looked at
 * @param body_format   printf format of what follows the prefix, cut at the end of the buffer; null: no body. With no
 *                      prefix either, the buffer keeps the text of the thread's previous message.
 * @return the buffer. It belongs to the library; the text stays until the same thread formats its next message.
 */
char *kel_trace_internal_format_str(const char *prefix_format, const char *prefix_arg, const char *body_format, ...)
    __attribute__((format(printf, 3, 4)));

/**
 * The same as kel_trace_internal_format_str(), with the values of the body as a list.
 *
 * @param prefix_format takes one string, the prefix argument; at most 255 characters of the result are kept
 * @param prefix_arg    null: no prefix, and prefix_format is not looked at
 * @param body_format   printf format of what follows the prefix; null: no body
 * @param values        the values of the body, consumed as by vsnprintf()
 * @return the calling thread's buffer, as kel_trace_internal_format_str().
 */
char *kel_trace_internal_vformat_str(const char *prefix_format, const char *prefix_arg, const char *body_format,
                                     va_list values) __attribute__((format(printf, 3, 0)));

/** Does nothing. Kept as an exported name. */
void kel_tracepoint(void);

/**
 * Requests a restart from the node's restart service, and returns: the service decides, the caller continues.
 *
 * @param line          source line of the request
 * @param file          source file of the request
 * @param reason_format printf format of the reason, cut to 127 characters
 */
void kel_abort_internal_abort(uint32_t line, const char *file, const char *reason_format, ...)
    __attribute__((format(printf, 3, 4)));

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
