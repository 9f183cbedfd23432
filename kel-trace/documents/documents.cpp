// kel-trace-documents: prints the manual page from the program's table. The build runs it; it is not installed.
#include "kel-trace/language/request.h"
#include "kelctl/documents/roff.h"

#include <fmt/core.h>

#include <cstdio>

namespace
{

using namespace kel_trace;

constexpr std::string_view description =
    R"(kel-trace reads recordings that the LTTng tools made of the events of libkel-core-ic, and shows why operations failed and
where the time went. A RECORDING is a folder: of a session, of a snapshot, or of a relay daemon with the recordings of many
hosts. Several recordings are merged in order of time.

Each view first shows what the recording lacks: records that the tracer discarded, and damaged stream files, which are read
up to the damage. Operations that were recorded in part are counted separately.)";

constexpr std::string_view explain_notes =
    R"(The exit record of an operation has no code: an operation counts as failed if it reports a failure and does not continue.
Failures that follow from another one (the object was not created, the service did not start) are shown with their cause.
Failures after which the library continues, in a take-down or a roll-back, are listed separately.

A recording of failures only is explained as far as its records allow.)";

constexpr std::string_view report_notes =
    R"(The own time of an operation excludes the operations within it. No record shows when a closed call returns: its time
lasts until the next record of its thread, which is an upper bound. Totals and maxima are exact, medians and 99th
percentiles within one percent.)";

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
    page.item("NO_COLOR", "if not empty: no colours on a terminal");
    page.section("EXAMPLES");
    page.example(example);
    page.section("SEE ALSO");
    page.text("kelctl(1), lttng(1), babeltrace2(1)");
    return std::fputs(page.written().c_str(), stdout) < 0 || std::fflush(stdout) != 0;
}
