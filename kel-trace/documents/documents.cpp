// kel-trace-documents: prints the manual page, which is made from the program's table. For the build.
#include "kel-trace/language/request.h"
#include "kelctl/documents/roff.h"

#include <fmt/core.h>

#include <cstdio>

namespace
{

using namespace kel_trace;

constexpr std::string_view description =
    R"(kel-trace reads recordings that the LTTng tools made of the events of libkel-core-ic, and shows why operations failed and
where the time went. A RECORDING is a folder: that of a session, of a snapshot, or of a relay daemon with those of many
hosts below it. Several are read as one, in order of time.

What a recording lacks is shown first: records that the tracer discarded, and stream files that are damaged, of which the
rest is left out. Operations that the recording shows in part are counted apart.)";

constexpr std::string_view explain_notes =
    R"(The exit of an operation carries no code: what an operation reports and does not go on after counts as its failure. A
failure of an object whose creation failed, or of a service whose latest start failed, is shown with its cause. Failures that
the library goes on after, in a take-down or a roll-back, are listed apart.

Recordings of failures only are explained as far as they go.)";

constexpr std::string_view report_notes =
    R"(The own time of an operation is without the operations within it. Nothing tells when a closed call returns: it counts
until the next record of its thread, which is an upper bound. Totals and the largest are exact, medians and 99th percentiles
within one percent.)";

constexpr std::string_view notes[] = {explain_notes, report_notes, ""};

constexpr std::string_view example = R"(lttng create field --output=field
lttng enable-event --userspace 'com_vantorix_ob_kel_*:*'
lttng add-context --userspace --type=vpid --type=vtid --type=procname
lttng start
lttng destroy
kel-trace explain field
kel-trace report --chrome chart.json field)";

void add_options(kelctl::roff_page &page, std::optional<view> only)
{
    for (const option_row &row : option_rows())
        if (row.only == only)
            page.item(row.value.empty() ? std::string(row.name) : fmt::format("{} {}", row.name, row.value),
                      fmt::format("{}.", row.help));
}

} // namespace

int main()
{
    kelctl::roff_page page("kel-trace", 1, "kel-trace", KEL_TRACE_VERSION, "explains recordings of libkel-core-ic");
    page.section("SYNOPSIS");
    page.text("kel-trace COMMAND [OPTION]... RECORDING...");
    page.section("DESCRIPTION");
    page.text(description);
    page.section("COMMANDS");
    for (const command_row &row : command_rows()) {
        page.subsection(row.name);
        page.text(fmt::format("kel-trace {}: {}.\n\n{}", row.name, row.help, notes[static_cast<size_t>(row.view)]));
        add_options(page, row.view);
    }
    page.section("OPTIONS");
    add_options(page, {});
    page.section("EXIT STATUS");
    for (const auto &[status, means] : exit_statuses())
        page.item(status, means);
    page.section("ENVIRONMENT");
    page.item("TZ", "the zone of the times that are shown and read");
    page.item("NO_COLOR", "when not empty: no colours on a terminal");
    page.section("EXAMPLES");
    page.example(example);
    page.section("SEE ALSO");
    page.text("kelctl(1), lttng(1), babeltrace2(1)");
    return std::fputs(page.written().c_str(), stdout) < 0 || std::fflush(stdout) != 0;
}
