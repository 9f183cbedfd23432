// What the session knows besides the counters. The document's reader is kel-exporter: what it needs is all that is
// here.
#include "kelctl/node/state.h"

#include "kel/kel_node_names.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/library/trace_log.h"
#include "kelctl/node/read_back.h"
#include "kelctl/node/statistics.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"
#include "kelctl/values/mp_id.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>

namespace kelctl
{
namespace
{

constexpr const char *line = "line"; // above the schedulers of the units

int64_t nanoseconds_of(std::chrono::steady_clock::time_point time)
{
    return std::chrono::nanoseconds(time.time_since_epoch()).count();
}

// The library makes one for each unit, and more between these and the line, through which all traffic passes.
fields schedulers()
{
    std::map<int32_t, std::string> units;
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        if (const auto row = qos_row(port))
            units.try_emplace(row->scheduler, port_group(port));
    fields all = {fields::array({{{"name", line}, {"above", nullptr}}})};
    for (const auto &[scheduler, unit] : units)
        all.push_back({{"name", unit}, {"above", line}});
    return all;
}

fields operations_of(const session &session)
{
    return list_of(session.operations, [](const auto &counted) {
        const auto &[operation, code] = counted.first;
        return fields{{"operation", operation}, {"code", code}, {"count", counted.second}};
    });
}

// What was asked for when the queue was made, not what the accelerator holds: on a vendor's platform nobody can ask
// that.
void describe_queues(const port_knowledge &ports, const session &session, fields &queues)
{
    std::map<int32_t, handle> handles;
    for (const auto &[queue, port] : ports.port_of_queue)
        handles[port] = queue;
    for (size_t i = 0; i < queues.size(); ++i) {
        fields &queue = queues[i];
        const auto port = queue.at("port").number<int32_t>();
        const kel_ebcom_path_config &path = session.paths.first_on(port);
        const bool shaped = path.shaping_enabled != 0;
        queue["scheduler"] = port_group(port);
        queue["rate"] = shaped ? fields(path.shaping_rate) : fields(nullptr);
        queue["burst"] = shaped ? fields(path.burst_size) : fields(nullptr);
        queue["threshold"] = shaped ? fields(uint64_t{path.buffer_threshold} * threshold_block) : fields(nullptr);
        queue["made"] = handles[port];
    }
}

// The PCEPs are those of the session, so each was made by a command.
void describe_pceps(const session &session, fields &pceps)
{
    std::map<uint32_t, const made_command *> made_by_id;
    for (const made_command *made : session.made.made_by("pcep add"))
        made_by_id[made->asked.given.id("ID")] = made;
    for (size_t i = 0; i < pceps.size(); ++i) {
        const made_command &made = *made_by_id.at(pceps[i].at("id").number<uint32_t>());
        const kel_location location = location_of(made.asked.given.mac("--local"), own_mp_id());
        pceps[i]["location"] = kel_location_name(location);
        pceps[i]["made"] = made.number;
    }
}

fields groups_of(const session &session)
{
    std::map<uint32_t, fields> members;
    for (const made_command *made : session.made.made_by("group add"))
        members[made->asked.given.id("GROUP")] = fields::array();
    for (const made_command *made : session.made.made_by("group member add"))
        members[made->asked.given.id("GROUP")].push_back(made->asked.given.id("ID"));
    return list_of(members, [](const auto &one) { return fields{{"id", one.first}, {"members", one.second}}; });
}

} // namespace

// Clocks first, then the counters, as a sample has them (sample.h); after that, what the session knows of each object.
result take_state(session &session)
{
    const fields held = queues_now();
    const port_knowledge ports = ports_of(held, session.paths);
    const auto written = session.log().timestamp_written();
    result taken = {.shown = {{"real", nanoseconds_of(std::chrono::steady_clock::now())},
                              {"virtual", on_software_accelerator() ? fields(virtual_time()) : fields(nullptr)},
                              {"since", nanoseconds_of(session.since)},
                              {"operations", operations_of(session)},
                              {"timestamp", written ? fields(nanoseconds_of(*written)) : fields(nullptr)},
                              {"schedulers", schedulers()}}};
    result counters = read_statistics(held, ports, session);
    for (auto &[name, value] : counters.shown.members())
        taken.shown[name] = std::move(value);
    taken.failures = std::move(counters.failures);
    taken.status = counters.status;
    describe_queues(ports, session, taken.shown["queues"]);
    describe_pceps(session, taken.shown["pceps"]);
    taken.shown["groups"] = groups_of(session);
    return taken;
}

} // namespace kelctl
