// The wording of a failure report.
#include "kelctl/failure_report.h"

#include "platform/kei_util.h"

#include <fmt/format.h>

namespace kelctl
{

std::string report_of(const failure &failure, bool tracer_installed, const painter &paint)
{
    std::string report = fmt::format("{} {}\n  code {}: {}\n", paint(colour::failure, "failed:"), failure.operation,
                                     failure.code, kei_util_init_rc_str_get(failure.code));
    if (!tracer_installed)
        return report + "  no trace records: the tracer is not installed on this machine\n";
    report += "  trace records of this operation:\n";
    for (const trace_entry &entry : failure.records)
        report += fmt::format("    {}\n", to_text(entry));
    return report;
}

} // namespace kelctl
