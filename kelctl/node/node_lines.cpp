// From the entries of a file to the arguments of a row.
#include "kelctl/node/node_lines.h"

#include <initializer_list>
#include <string_view>
#include <utility>

namespace kelctl
{
namespace
{

using given_argument = std::pair<std::string_view, argument_value>;

// Makes commands of a table.
class line_writer
{
public:
    explicit line_writer(const command_table &table) : table_(table)
    {
    }

    // The arguments, until the next line is added.
    arguments &add(std::string_view name, uint32_t number, std::initializer_list<given_argument> given = {})
    {
        lines_.push_back(invocation_of(*table_.find(name)));
        lines_.back().line = number;
        for (const auto &[argument, value] : given)
            lines_.back().given.set(argument, value);
        return lines_.back().given;
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

void add_parameters(line_writer &lines, const ebcom_parameters &ebcom)
{
    lines.add("ebcom params set", ebcom.at.line,
              {{"--mtu", number(ebcom.ic_port_mtu)},
               {"--ether-type", number(ebcom.ether_type)},
               {"--settings", std::vector<uint32_t>(ebcom.settings.begin(), ebcom.settings.end())}});
}

void add_path(line_writer &lines, const path_entry &path)
{
    arguments &given =
        lines.add("ebcom path add", path.at.line, {{"MAC", path.dst_mac}, {"--port", int64_t{path.port}}});
    if (path.count != 1)
        given.set("--count", number(path.count));
    if (!path.shaping)
        return;
    given.set("--rate", number(path.shaping->rate));
    given.set("--burst", number(path.shaping->burst));
    given.set("--threshold", number(path.shaping->threshold));
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
    arguments &given = lines.add(
        "traffic stream add", traffic.at.line,
        {{"--octets", number(traffic.octets)}, {"--burst", number(traffic.burst)}, {"--start", number(traffic.start)}});
    if (traffic.to)
        given.set("--to", *traffic.to);
    else
        given.set("--from", number(traffic.from));
    if (traffic.rate != 0)
        given.set("--rate", number(traffic.rate));
    else
        given.set("--frames-per-second", number(traffic.frames_per_second));
    if (traffic.stop)
        given.set("--stop", number(*traffic.stop));
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
