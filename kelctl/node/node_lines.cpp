// From the entries of a file to the arguments of a row.
#include "kelctl/node/node_lines.h"

#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

// A value of none is left out.
using given_argument = std::pair<std::string_view, std::optional<argument_value>>;

// Makes commands of a table.
class line_writer
{
public:
    explicit line_writer(const command_table &table) : table_(table)
    {
    }

    void add(std::string_view name, uint32_t number, std::initializer_list<given_argument> given = {})
    {
        invocation made = invocation_of(*table_.find(name));
        made.line = number;
        for (const auto &[argument, value] : given)
            if (value)
                made.given.set(argument, *value);
        lines_.push_back(std::move(made));
    }

    std::vector<invocation> take()
    {
        return std::move(lines_);
    }

private:
    const command_table &table_;
    std::vector<invocation> lines_;
};

argument_value number(uint64_t value)
{
    return static_cast<int64_t>(value);
}

std::optional<argument_value> unless(uint64_t usual, uint64_t value)
{
    return value == usual ? std::nullopt : std::optional(number(value));
}

template <typename Value> std::optional<argument_value> if_given(const std::optional<Value> &value)
{
    return value ? std::optional<argument_value>(number(*value)) : std::nullopt;
}

void add_parameters(line_writer &lines, const ebcom_parameters &ebcom)
{
    lines.add("ebcom params set", ebcom.at.line,
              {{"--mtu", number(ebcom.ic_port_mtu)},
               {"--ether-type", number(ebcom.ether_type)},
               {"--settings", std::vector<uint32_t>(ebcom.settings.begin(), ebcom.settings.end())}});
}

void add_path(line_writer &lines, const path_entry &path)
{
    const auto shaped = [&](uint32_t shaping::*value) {
        return path.shaping ? std::optional(number(path.shaping.value().*value)) : std::nullopt;
    };
    lines.add("ebcom path add", path.at.line,
              {{"MAC", path.dst_mac},
               {"--port", int64_t{path.port}},
               {"--rate", shaped(&shaping::rate)},
               {"--burst", shaped(&shaping::burst)},
               {"--threshold", shaped(&shaping::threshold)},
               {"--count", unless(1, path.count)}});
}

void add_pcep(line_writer &lines, const pcep_entry &pcep)
{
    lines.add("pcep add", pcep.at.line,
              {{"ID", number(pcep.id)},
               {"--remote-id", number(pcep.remote_id)},
               {"--local", pcep.local_mac},
               {"--remote", pcep.remote_mac},
               {"--vlan", number(pcep.vlan)},
               {"--priority", number(pcep.priority)}});
}

void add_end_points(line_writer &lines, const node_file &node)
{
    if (node.pceps.empty() && node.groups.empty())
        return;
    lines.add("pcep start", 0);
    for (const pcep_entry &pcep : node.pceps)
        add_pcep(lines, pcep);
    for (const multicast_entry &group : node.groups)
        lines.add("group add", group.at.line, {{"GROUP", number(group.id)}});
    for (const multicast_entry &group : node.groups)
        for (const placed_number &member : group.members)
            lines.add("group member add", member.at.line, {{"GROUP", number(group.id)}, {"ID", number(member.value)}});
}

void add_stream(line_writer &lines, const traffic_entry &traffic)
{
    lines.add("traffic stream add", traffic.at.line,
              {{"--to", traffic.to ? std::optional<argument_value>(*traffic.to) : std::nullopt},
               {"--from", unless(no_id, traffic.from)},
               {"--octets", number(traffic.octets)},
               {"--rate", unless(0, traffic.rate)},
               {"--frames-per-second", unless(0, traffic.frames_per_second)},
               {"--burst", number(traffic.burst)},
               {"--start", number(traffic.start)},
               {"--stop", if_given(traffic.stop)}});
}

} // namespace

std::vector<invocation> lines_of(const node_file &node, const command_table &table)
{
    line_writer lines(table);
    if (node.mpid)
        lines.add("mpid", node.mpid_at.line, {{"MPID", number(*node.mpid)}});
    add_parameters(lines, node.ebcom);
    lines.add("ebcom interface create", 0);
    lines.add("ebcom start", 0);
    for (const path_entry &path : node.paths)
        add_path(lines, path);
    add_end_points(lines, node);
    for (const traffic_entry &traffic : node.traffic)
        add_stream(lines, traffic);
    return lines.take();
}

uint64_t path_count(const node_file &node)
{
    uint64_t count = 0;
    for (const path_entry &entry : node.paths)
        count += entry.count;
    return count;
}

} // namespace kelctl
