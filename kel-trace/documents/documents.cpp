// kel-trace-documents: prints the manual page from the program's table. The build runs it; it is not installed.
#include "kel-trace/language/request.h"
#include "options/documents/manual.h"

namespace
{

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

constexpr options::meaning environment[] = {
    {"TZ", "the zone of the times that are shown and read"},
    {"NO_COLOR", "if not empty: no colours on a terminal"},
};

} // namespace

int main()
{
    return options::print_manual(kel_trace::program, {.about = "explains recordings of libkel-core-ic",
                                                      .description = description,
                                                      .notes = notes,
                                                      .environment = environment,
                                                      .example = example,
                                                      .see_also = "kelctl(1), lttng(1), babeltrace2(1)"});
}
