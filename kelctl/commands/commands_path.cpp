// Rows of paths, of the shapers and queues below them, and of look-ups by destination. Counters of a queue are in
// commands_statistics.cpp.
#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/commands/commands.h"
#include "kelctl/input/interruption.h"
#include "kelctl/session/path_config.h"
#include "kelctl/session/session.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace kelctl
{
namespace
{

constexpr std::string_view qos_dump_file = "/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME";

// An unshaped queue's threshold is the library's own.
constexpr std::string_view unshaped_threshold = "5000 KiB";

const argument destination = {.name = "MAC", .kind = kind::mac(), .help = "address of the destination"};
const argument through_port = {.name = "--port", .kind = kind::ebcom_port(), .help = "IC port"};

const argument path_count = {.name = "--count",
                             .kind = kind::number(path_count_range),
                             .help = "number of paths, to consecutive addresses from MAC on (default 1)",
                             .required = false};

const argument handle_name = {.name = "--as",
                              .kind = kind::handle_name(),
                              .help = "how later commands name the handle: as it is on another node",
                              .required = false};

// A removal passes the whole configuration on, of which the library only traces this.
const argument traced_configuration = {.name = "--configured",
                                       .kind = kind::numbers(4, dword_range),
                                       .help = "shaping, rate, threshold and burst, which are only traced",
                                       .required = false};

// The arguments of a path or a shaper; `last` are those of a path only.
std::vector<argument> shaped(std::vector<argument> last = {})
{
    std::vector<argument> all = {
        destination,
        through_port,
        {.name = "--rate", .kind = kind::rate(), .help = "shape the port's queue to this rate", .needs = "--burst"},
        {.name = "--burst", .kind = kind::burst(), .help = "largest burst of the shaped queue", .needs = "--rate"},
        {.name = "--threshold",
         .kind = kind::threshold(),
         .help = "memory for frames that wait in the shaped queue",
         .otherwise = std::string(unshaped_threshold),
         .needs = "--rate"},
        {.name = "--shaping",
         .kind = kind::only_raw(octet_range),
         .help = "with --raw: whether the queue is shaped (default 1)",
         .needs = "--rate"}};
    std::ranges::move(last, std::back_inserter(all));
    return all;
}

constexpr std::string_view shaping_details =
    R"(Without --rate and --burst the queue is not shaped. All paths of a port share one
queue and require the same shaping.)";

std::optional<objection> check_count(const arguments &given)
{
    const mac_address &first = given.mac("MAC");
    if (!given.has("--count") || given.number<uint32_t>("--count") - 1 <= addresses_after(first))
        return std::nullopt;
    return objection{"--count", fmt::format("at most {} paths from {} on: only the last three octets count up",
                                            addresses_after(first) + 1, to_text(first))};
}

// How a successful call changes the paths that the session remembers, which name the queues in its output.
using change = void (added_paths::*)(const kel_ebcom_path_config &path);

// One invocation per path, so that each can be undone and a failure names its address.
result change_paths(const invocation &asked, session &session)
{
    const mac_address first = asked.given.mac("MAC");
    const auto count = asked.given.number<uint32_t>("--count");
    invocation one = asked;
    one.given.erase("--count");
    for (uint32_t i = 0; i < count; ++i) {
        if (interrupted())
            return {.status = exit_operation_failed,
                    .remark = fmt::format("interrupted after {} of {} paths", i, count)};
        one.given.set("MAC", counted_up(first, i));
        if (result done = session.perform(one); done.status != exit_done)
            return done;
    }
    return {.code = 0};
}

// The session follows what succeeded only: what a failure leaves is not known.
template <uint32_t (*Function)(const kel_ebcom_path_config *), change Change>
result change_path(const invocation &asked, session &session)
{
    if (asked.given.has("--count"))
        return change_paths(asked, session);
    const kel_ebcom_path_config path = path_of(asked.given);
    result done = session.call(asked, Function, parameter::input("config", path));
    if (done.code == 0)
        (session.paths.*Change)(path);
    return done;
}

// So a script that was recorded on another node runs with the handles of that one.
void name_handle(const arguments &given, void *handle, session &session)
{
    if (given.has("--as"))
        session.handles[given.get<uint64_t>("--as")] = reinterpret_cast<uint64_t>(handle);
}

// A refused call may return a queue as well, so the handle is shown whenever there is one.
template <uint32_t (*Function)(const kel_ebcom_path_config *, ork_ebcom_pcep_path *), change Change>
result change_shaper(const invocation &asked, session &session)
{
    const kel_ebcom_path_config config = path_of(asked.given);
    ork_ebcom_pcep_path path{};
    result done = session.call(asked, Function, parameter::input("config", config), parameter::output(path));
    if (done.code == 0)
        (session.paths.*Change)(config);
    if (path.queue_hdl) {
        done.shown = fields{{"queue_handle", fmt::format("{}", path.queue_hdl)}};
        name_handle(asked.given, path.queue_hdl, session);
    }
    return done;
}

// Remembers the handle, which completion then offers.
template <uint32_t (*Function)(const uint8_t *, void **), std::set<uint64_t> known_words::*Handles>
result look_up_handle(const invocation &asked, session &session)
{
    void *handle = nullptr;
    result done =
        session.call(asked, Function, parameter::input("dst_mac", asked.given.mac("MAC")), parameter::output(handle));
    if (done.code == 0) {
        done.shown = fields{{"handle", fmt::format("{}", handle)}};
        (session.known.*Handles).insert(reinterpret_cast<uint64_t>(handle));
        name_handle(asked.given, handle, session);
    }
    return done;
}

result check_port_channel(const invocation &asked, session &session)
{
    const auto port = asked.given.number<int32_t>("PORT");
    uint8_t channel = 0;
    result done = session.call(asked, kel_ic_ebcom_port_to_mac_chan, parameter::value("iell_port", port),
                               parameter::output(channel));
    // The library has no mapping: what it accepts it leaves as it was.
    done.shown = {{"port", port_text(port)}, {"accepted", done.code == 0}};
    return done;
}

result dump_handles(const invocation &asked, session &session)
{
    result done = session.call(asked, kel_core_ic_ebcom_qos_handle_dump);
    if (done.code == 0)
        done.shown = {{"file", qos_dump_file}};
    return done;
}

} // namespace

std::vector<command> path_commands()
{
    return {
        {.name = "ebcom path add",
         .variants = {{"kel_core_ic_ebcom_path_add", change_path<kel_core_ic_ebcom_path_add, &added_paths::add>}},
         .help = "Add a path from an IC port to a destination",
         .details = shaping_details,
         .arguments = shaped({path_count}),
         .check = check_count,
         .example = "ebcom path add 02:00:02:02:00:01 --port RLU1P --rate 10000 --burst 4096",
         .undo = "ebcom path remove",
         .makes = {"path", "paths", "removed"},
         .service = "EBCOM service"},
        {.name = "ebcom path remove",
         .variants = {{"kel_core_ic_ebcom_path_rem", change_path<kel_core_ic_ebcom_path_rem, &added_paths::remove>}},
         .help = "Remove one path to a destination",
         .arguments = {destination, through_port, path_count, traced_configuration},
         .check = check_count,
         .example = "ebcom path remove 02:00:02:02:00:01 --port RLU1P",
         .service = "EBCOM service"},
        {.name = "ebcom shaper add",
         .variants = {{"kel_ic_ebcom_add_shaper", change_shaper<kel_ic_ebcom_add_shaper, &added_paths::add>}},
         .help = "Take a reference on a port's queue (one step of path add)",
         .details = shaping_details,
         .arguments = shaped({handle_name}),
         .example = "ebcom shaper add 02:00:02:02:00:02 --port RLU1Q",
         .undo = "ebcom shaper remove",
         .makes = {"shaper", "shapers", "removed"},
         .service = "EBCOM service"},
        {.name = "ebcom shaper remove",
         .variants = {{"kel_ic_ebcom_remove_shaper", change_shaper<kel_ic_ebcom_remove_shaper, &added_paths::remove>}},
         .help = "Drop a reference on a port's queue",
         .arguments = {destination, through_port, traced_configuration},
         .example = "ebcom shaper remove 02:00:02:02:00:02 --port RLU1Q",
         .service = "EBCOM service"},
        {.name = "ebcom queue handle",
         .variants = {{"kel_ic_ebcom_queue_handle_get",
                       look_up_handle<kel_ic_ebcom_queue_handle_get, &known_words::queues>}},
         .help = "Show the queue that carries a destination",
         .arguments = {destination, handle_name},
         .example = "ebcom queue handle 02:00:02:02:00:01",
         .service = "EBCOM service"},
        {.name = "ebcom scheduler handle",
         .variants = {{"kel_ic_ebcom_scheduler_handle_get",
                       look_up_handle<kel_ic_ebcom_scheduler_handle_get, &known_words::schedulers>}},
         .help = "Show the scheduler above that queue",
         .arguments = {destination, handle_name},
         .example = "ebcom scheduler handle 02:00:02:02:00:01",
         .service = "EBCOM service"},
        {.name = "ebcom port channel",
         .variants = {{"kel_ic_ebcom_port_to_mac_chan", check_port_channel}},
         .help = "Look up the MAC channel of an IC port",
         .details = "There is no mapping of ports to channels: every port but 0 is accepted.",
         .arguments = {{.name = "PORT", .kind = kind::port(), .help = "IC port"}},
         .example = "ebcom port channel RLU1P"},
        {.name = "ebcom qos dump",
         .variants = {{"kel_core_ic_ebcom_qos_handle_dump", dump_handles}},
         .help = "Write all scheduler and queue handles to a file in /tmp"},
    };
}

} // namespace kelctl
