// Calling, and asking the trace log about it.
#include "kelctl/operation.h"

namespace kelctl
{

std::optional<failure> run(const operation &operation, trace_log &log)
{
    if (!operation.call)
        return std::nullopt;
    log.start_operation();
    const uint32_t code = operation.call();
    if (code == 0)
        return std::nullopt;
    return failure{operation.text(), code, log.operation_records()};
}

} // namespace kelctl
