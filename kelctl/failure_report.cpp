// The wording of a failure report.
#include "kelctl/failure_report.h"

#include "kelctl/explanation.h"
#include "platform/kei_util.h"

#include <fmt/format.h>

namespace kelctl
{
namespace
{

// The driver kit's codes are told as its records print them, too.
std::string code_text(int64_t code)
{
    return code < 0 ? fmt::format("{} (0x{:x})", code, static_cast<uint32_t>(code)) : fmt::to_string(code);
}

std::string refusal_text(const explanation &why)
{
    const std::string code = why.code ? fmt::format(", code {}", code_text(*why.code)) : "";
    const std::string what = why.what.empty() ? "" : fmt::format(": {}", why.what);
    return fmt::format("refused by the {}{}{}: {}", why.by, what, code, why.text);
}

} // namespace

std::string report_of(const failure &failure, bool tracer_installed, const painter &paint)
{
    std::string report = fmt::format("{} {}\n  code {}: {}\n", paint(colour::failure, "failed:"), failure.operation,
                                     failure.code, kei_util_init_rc_str_get(failure.code));
    if (const auto why = explanation_of(failure))
        report += fmt::format("  {}\n", refusal_text(*why));
    if (!tracer_installed)
        return report + "  no trace records: the tracer is not installed on this machine\n";
    report += "  trace records of this operation:\n";
    for (const trace_entry &entry : failure.records)
        report += fmt::format("    {}\n", to_text(entry));
    return report;
}

} // namespace kelctl
