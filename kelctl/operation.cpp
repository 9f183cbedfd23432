// Calling, and asking the trace log about it.
#include "kelctl/operation.h"

namespace kelctl
{

std::optional<failure> run(const operation &operation, const call_record &record)
{
    if (!operation.call)
        return std::nullopt;
    record.log.start_operation();
    const uint32_t code = operation.call();
    if (record.program && operation.write)
        operation.write(*record.program, code);
    if (code == 0)
        return std::nullopt;
    return failure{operation.text(), code, record.log.operation_records()};
}

} // namespace kelctl
