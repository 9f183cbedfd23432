// The wording of a failure report. As JSON the same facts are written by result_document.cpp.
#include "kelctl/results/failure_report.h"

#include "kelctl/library/explanation.h"
#include "platform/kei_util.h"
#include "terminal/terminal.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

// Codes of the driver kit, which are negative, also in hexadecimal: its records print them so.
std::string code_text(int64_t code)
{
    return code < 0 ? fmt::format("{} (0x{:x})", code, static_cast<uint32_t>(code)) : std::to_string(code);
}

std::string refusal_text(const explanation &why)
{
    const std::string code = why.code ? fmt::format(", code {}", code_text(*why.code)) : "";
    const std::string what = why.what.empty() ? "" : fmt::format(": {}", why.what);
    return fmt::format("refused by the {}{}{}: {}", why.by, what, code, why.text);
}

} // namespace

std::string records_of(const failure &failure, bool tracer_installed, const page &page)
{
    if (!tracer_installed)
        return line_on(page, "no trace records: the tracer is not installed on this machine");
    const std::string_view function = std::string_view(failure.operation).substr(0, failure.operation.find('('));
    return line_on(page, fmt::format("trace records of {}():", function)) + records_text(failure.records, page);
}

std::string report_of(const failure &failure, const page &page, std::string_view lead)
{
    const std::string failed = page.paint(terminal::colour::failure, "failed:");
    std::string report = line_on(page, fmt::format("{}{} {}", lead, failed, failure.operation));
    report += line_on(page, fmt::format("  code {}: {}", failure.code, kei_util_init_rc_str_get(failure.code)));
    if (const auto why = explanation_of(failure))
        report += line_on(page, fmt::format("  {}", refusal_text(*why)));
    if (!failure.hint.empty())
        report += line_on(page, fmt::format("  {}", failure.hint));
    return report;
}

std::string complaints_text(std::string_view what, const std::vector<trace_entry> &complaints, const page &page)
{
    return line_on(page, fmt::format("{} succeeded, but its trace records report failures:", what)) +
           records_text(complaints, page);
}

std::string records_text(const std::vector<trace_entry> &records, const page &page)
{
    std::string text;
    for (const trace_entry &entry : records)
        text += line_on(page, fmt::format("    {}", to_text(entry)));
    return text;
}

} // namespace kelctl
