/*
 * qol_ng.h - the node-restart service.
 *
 * Our own declaration of a closed library's interface.
 */
#ifndef PLATFORM_QOL_NG_H
#define PLATFORM_QOL_NG_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Requests a restart of the node, with the place and the reason of the request, and returns. The service decides. */
int32_t qol_ng_restart_request_line_and_file(uint32_t line, const char *file, uint32_t one, const char *reason,
                                             uint32_t zero, void *null);

#ifdef __cplusplus
}
#endif

#endif
