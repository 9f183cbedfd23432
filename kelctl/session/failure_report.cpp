// The wording of a failure report.
#include "kelctl/session/failure_report.h"

#include "kelctl/library/explanation.h"
#include "kelctl/terminal/text.h"
#include "platform/kei_util.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

// The driver kit's codes are told as its records print them, too.
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

std::string line_of(const report_page &page, std::string_view text, size_t unseen = 0)
{
    return page.width ? folded(text, *page.width, unseen) : fmt::format("{}\n", text);
}

} // namespace

report_page page_for(std::FILE *stream)
{
    return {painter_for(stream), line_width(stream)};
}

std::string report_of(const failure &failure, bool tracer_installed, const report_page &page, std::string_view place)
{
    constexpr std::string_view begin = "failed:";
    const std::string painted = page.paint(colour::failure, begin);
    std::string report =
        line_of(page, fmt::format("{}{} {}", place, painted, failure.operation), painted.size() - begin.size());
    report += line_of(page, fmt::format("  code {}: {}", failure.code, kei_util_init_rc_str_get(failure.code)));
    if (const auto why = explanation_of(failure))
        report += line_of(page, fmt::format("  {}", refusal_text(*why)));
    if (!tracer_installed)
        return report + line_of(page, "  no trace records: the tracer is not installed on this machine");
    report += "  trace records of this operation:\n";
    for (const trace_entry &entry : failure.records)
        report += line_of(page, fmt::format("    {}", to_text(entry)));
    return report;
}

} // namespace kelctl
