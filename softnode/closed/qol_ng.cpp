/*
 * qol_ng.cpp - the node-restart service: requests are kept for the snapshot and not obeyed.
 */
#include "softnode/closed/codes.h"
#include "softnode/instance/closed_call.h"
#include "softnode/platform.h"

using namespace softnode;

int32_t qol_ng_restart_request_line_and_file(uint32_t line, const char *file, uint32_t, const char *reason, uint32_t,
                                             void *)
{
    return closed_call<int32_t>(__func__, [&](Node &node) {
        if (!file || !reason)
            return driver_kit_code(Refusal::invalid);
        node.restarts.push_back({line, file, reason});
        return driver_kit_code(Refusal::granted);
    });
}
