// Rows of counters: of the service, of queues, of PCEPs; as records and as the formatting library's text. A row of this
// file has one variant per exported function, because several functions read the same counters.
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kelctl/commands/commands.h"
#include "kelctl/node/statistics.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"
#include "notation/json.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <span>

namespace kelctl
{
namespace
{

constexpr uint32_t usual_length = 4096; // octets; a text that is longer fails with the formatting library's code

constexpr uint8_t text_table = 0; // the format

const argument destination = {.name = "MAC", .kind = kind::mac(), .help = "destination that the queue carries"};
const argument pcep = {.name = "ID", .kind = kind::pcep_id(), .help = "id of the PCEP"};

// What the variants that lay out a text have, behind the object that is asked for.
std::vector<argument> of_a_text(std::vector<argument> arguments = {})
{
    const std::vector<std::string_view> texts = {"text", "text-second-name", "text-2"};
    arguments.push_back({.name = "--format",
                         .kind = kind::format(),
                         .help = "layout of the text (default text)",
                         .required = false,
                         .only_for = texts});
    arguments.push_back({.name = "--length",
                         .kind = kind::number(text_length_range, dword_range),
                         .help = "size of the buffer for the text (default 4096)",
                         .required = false,
                         .only_for = texts});
    return arguments;
}

// The text that a function lays out in a buffer; `keys` are its parameters before that. A document of counters is taken
// apart for the result as well.
template <typename Function, typename... Keys>
result laid_out(const invocation &asked, session &session, Function function, const Keys &...keys)
{
    const auto length = asked.given.has("--length") ? asked.given.number<uint32_t>("--length") : usual_length;
    const std::unique_ptr<char[]> memory(new char[std::max(length, 1U)]); // not cleared: it may be large
    const std::span buffer(memory.get(), length);
    const uint8_t format = asked.given.has("--format") ? asked.given.number<uint8_t>("--format") : text_table;
    result done =
        session.call(asked, function, keys..., parameter::text_output(buffer), parameter::value("format", format));
    done.text = format == text_table ? lines_on(session.output_page(), buffer.data()) : buffer.data();
    done.shown = fields{{"format", format}, {"text", buffer.data()}};
    if (auto counters = notation::try_read_json(buffer.data()); counters && counters->is_object())
        done.shown["counters"] = *std::move(counters);
    return done;
}

std::string hexadecimal(const void *octets, size_t count)
{
    return fmt::format("{:02x}", fmt::join(std::span(static_cast<const uint8_t *>(octets), count), ""));
}

// ---- The service ----

// Only the driver kit defines what the octets count, so they are shown as hexadecimal rows.
result global_record(const invocation &asked, session &session)
{
    ebcom_global_stats stats{};
    result done = session.call(asked, kel_ic_ebcom_get_global_stats, parameter::output(stats));
    if (done.code != 0)
        return done;
    constexpr size_t row = 32;
    for (size_t i = 0; i < sizeof stats; i += row)
        done.shown[fmt::format("octet_{:03}", i)] = hexadecimal(reinterpret_cast<const uint8_t *>(&stats) + i, row);
    return done;
}

template <auto Function> result global_text(const invocation &asked, session &session)
{
    return laid_out(asked, session, Function);
}

// ---- Queues ----

result queue_record(const invocation &asked, session &session)
{
    ebcom_queue_stats stats{};
    result done = session.call(asked, kel_core_ic_ebcom_queue_stats_get,
                               parameter::input("dst_mac", asked.given.mac("MAC")), parameter::output(stats));
    if (done.code == 0)
        done.shown = counters_of(stats);
    return done;
}

template <auto Function> result queue_text(const invocation &asked, session &session)
{
    return laid_out(asked, session, Function, parameter::input("dst_mac", asked.given.mac("MAC")));
}

// Handles may have names of another node (--as); 0 is passed where none is given.
result burst_record(const invocation &asked, session &session)
{
    const auto given = [&](const char *name) {
        return parameter::handle{asked.given.has(name) ? session.handle_called(asked.given.get<uint64_t>(name)) : 0};
    };
    ebcom_queue_stats stats{};
    result done = session.call(asked, kel_ic_ebcom_set_burst_stats, given("--queue"), given("--scheduler"),
                               parameter::output(stats));
    done.shown = {{"max_burst_size", stats.max_burst_size}, {"current_burst_size", stats.current_burst_size}};
    return done;
}

// ---- PCEPs ----

// Members have the names of the record's: only the driver kit knows what they count.
result pcep_driver_kit_record(const invocation &asked, session &session)
{
    ebcom_pcep_stats stats{};
    result done =
        session.call(asked, kel_ic_pcep_get_stats, parameter::value("pcep_id", asked.given.number<uint32_t>("ID")),
                     parameter::output(stats));
    const auto &[outbound, inbound] = stats;
    if (done.code == 0)
        done.shown = {{"out_cnt0", outbound.out_cnt0}, {"out_cnt1", outbound.out_cnt1}, {"in_cnt0", inbound.in_cnt0},
                      {"in_word0", inbound.in_word0},  {"in_word1", inbound.in_word1},  {"in_cnt1", inbound.in_cnt1},
                      {"in_word2", inbound.in_word2},  {"in_word3", inbound.in_word3},  {"in_cnt2", inbound.in_cnt2},
                      {"in_cnt3", inbound.in_cnt3},    {"in_word4", inbound.in_word4},  {"in_word5", inbound.in_word5},
                      {"in_word6", inbound.in_word6}};
    return done;
}

// The members are copied: those of a packed record cannot be referred to.
template <uint32_t (*Function)(uint32_t, pcep_stats *)> result pcep_record(const invocation &asked, session &session)
{
    pcep_stats stats{};
    result done = session.call(asked, Function, parameter::value("pcep_id", asked.given.number<uint32_t>("ID")),
                               parameter::output(stats));
    if (done.code == 0)
        done.shown = fields{{"in_cnt0", uint64_t{stats.in_cnt0}},   {"in_word4", uint32_t{stats.in_word4}},
                            {"in_word0", uint32_t{stats.in_word0}}, {"in_word5", uint32_t{stats.in_word5}},
                            {"in_word1", uint32_t{stats.in_word1}}, {"in_word2", uint32_t{stats.in_word2}},
                            {"in_cnt1", uint64_t{stats.in_cnt1}},   {"in_word3", uint32_t{stats.in_word3}},
                            {"in_word6", uint32_t{stats.in_word6}}, {"in_cnt2", uint64_t{stats.in_cnt2}},
                            {"in_cnt3", uint64_t{stats.in_cnt3}},   {"out_cnt0", uint64_t{stats.out_cnt0}},
                            {"out_cnt1", uint64_t{stats.out_cnt1}}};
    return done;
}

template <auto Function> result pcep_text(const invocation &asked, session &session)
{
    return laid_out(asked, session, Function, parameter::value("pcep_id", asked.given.number<uint32_t>("ID")));
}

} // namespace

std::vector<command> statistics_commands()
{
    return {
        {.name = "ebcom stats",
         .variants = {{"kel_core_ic_ebcom_global_fmt_stats_get", global_text<kel_core_ic_ebcom_global_fmt_stats_get>,
                       "text"},
                      {"kel_core_ic_ebcom_fmt_global_stats", global_text<kel_core_ic_ebcom_fmt_global_stats>,
                       "text-second-name"},
                      {"kel_ic_ebcom_get_global_stats", global_record, "record"}},
         .help = "Show the service's global counters",
         .arguments = of_a_text()},
        {.name = "ebcom queue stats",
         .variants = {{"kel_core_ic_ebcom_queue_fmt_stats_get", queue_text<kel_core_ic_ebcom_queue_fmt_stats_get>,
                       "text"},
                      {"kel_core_ic_ebcom_fmt_queue_stats", queue_text<kel_core_ic_ebcom_fmt_queue_stats>,
                       "text-second-name"},
                      {"kel_core_ic_ebcom_queue_fmt_stats_get_2", queue_text<kel_core_ic_ebcom_queue_fmt_stats_get_2>,
                       "text-2"},
                      {"kel_core_ic_ebcom_queue_stats_get", queue_record, "record"}},
         .help = "Show the counters of the queue that carries a destination",
         .arguments = of_a_text({destination}),
         .example = "ebcom queue stats 02:00:02:02:00:01",
         .service = "EBCOM service"},
        {.name = "ebcom burst stats",
         .variants = {{"kel_ic_ebcom_set_burst_stats", burst_record}},
         .help = "Call the burst step of the queue counters, which measures nothing",
         .arguments = {{.name = "--queue", .kind = kind::queue_handle(), .help = "of the queue", .required = false},
                       {.name = "--scheduler",
                        .kind = kind::scheduler_handle(),
                        .help = "of the scheduler above it",
                        .required = false}},
         .example = "ebcom burst stats --queue 0x5c0000000d"},
        {.name = "pcep stats",
         .variants = {{"kel_core_ic_pcep_fmt_stats_get", pcep_text<kel_core_ic_pcep_fmt_stats_get>, "text"},
                      {"kel_core_ic_pcep_fmt_stats", pcep_text<kel_core_ic_pcep_fmt_stats>, "text-second-name"},
                      {"kel_core_ic_pcep_stats_get", pcep_record<kel_core_ic_pcep_stats_get>, "record"},
                      {"kel_core_ic_pcep_get_stats", pcep_record<kel_core_ic_pcep_get_stats>, "record-second-name"},
                      {"kel_ic_pcep_get_stats", pcep_driver_kit_record, "driver-kit-record"}},
         .help = "Show the counters of a unicast PCEP",
         .arguments = of_a_text({pcep}),
         .example = "pcep stats 7",
         .service = "PCEP service"},
    };
}

} // namespace kelctl
