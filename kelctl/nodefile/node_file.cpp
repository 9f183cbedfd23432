// Reading node files: which key is what kind of value. Values are fetched through table_reader; which keys there are
// is node_keys.h.
#include "kelctl/nodefile/node_file.h"

#include "kelctl/nodefile/node_keys.h"
#include "kelctl/nodefile/table_reader.h"
#include "kelctl/nodefile/traffic_table.h"
#include "kelctl/terminal/text.h"
#include "kelctl/values/file_text.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"

#include <fmt/core.h>

#include <algorithm>

namespace kelctl
{
namespace
{

// The parser bounds how deep values nest, but not how many dots a key has, and a document is taken apart recursively.
constexpr size_t most_dots_in_a_line = 128;

// The port's number, whether it carries EBCOM or not.
std::optional<int32_t> any_port(const table_reader &path, const toml::node &node)
{
    const position at = position_of(node.source());
    if (const auto *number = node.as_integer()) {
        if (is_port(number->get()))
            return static_cast<int32_t>(number->get());
        path.note(at, fmt::format("port: {}", no_such_port(std::to_string(number->get()))));
    } else if (const auto *name = node.as_string()) {
        if (const auto port = port_by_name(name->get()))
            return port;
        path.note(at, fmt::format("port: {}", no_such_port(name->get())));
    } else {
        path.note(at, "port: expected the name or the number of a port");
    }
    return std::nullopt;
}

int32_t read_port(const table_reader &path)
{
    const toml::node *node = path.required("port");
    const auto port = node ? any_port(path, *node) : std::nullopt;
    if (port && !carries_ebcom(*port))
        path.note(path.at("port"),
                  fmt::format("port: {} does not carry EBCOM; these do: {}", port_text(*port), ports_with_ebcom));
    return port.value_or(0);
}

std::optional<shaping> read_shaping(const table_reader &path)
{
    if (!path.has("shaping"))
        return std::nullopt;
    auto table = path.table("shaping");
    if (!table)
        return std::nullopt;
    table->allow_only(node_keys_of("path.shaping"));
    const shaping read = {.rate = table->quantity("rate", rate_units, rate_range),
                          .burst = table->quantity("burst", size_units, burst_range),
                          .threshold = table->quantity("threshold", size_units, threshold_range)};
    if (read.threshold % threshold_block != 0)
        table->note(table->at("threshold"), fmt::format("threshold: {}", no_multiple(read.threshold, threshold_block)));
    return read;
}

uint32_t read_count(const table_reader &path, const mac_address &first)
{
    if (!path.has("count"))
        return 1;
    const uint32_t count = path.number("count", path_count_range);
    if (count - 1 > addresses_after(first))
        path.note(path.at("count"), fmt::format("count: only {} more addresses follow {} in its last three octets",
                                                addresses_after(first), to_text(first)));
    return count;
}

path_entry read_path(table_reader &path)
{
    path.allow_only(node_keys_of("path"));
    path_entry entry;
    entry.dst_mac = path.station("dst_mac");
    entry.port = read_port(path);
    entry.shaping = read_shaping(path);
    entry.count = read_count(path, entry.dst_mac);
    entry.at = path.at();
    entry.port_at = path.at("port");
    entry.shaping_at = path.at("shaping");
    entry.count_at = path.at("count");
    return entry;
}

pcep_entry read_pcep(table_reader &pcep)
{
    pcep.allow_only(node_keys_of("pcep"));
    const uint32_t priority = pcep.has("priority") ? pcep.number("priority", priority_range) : 0;
    return {.id = pcep.sound_number("id", id_range).value_or(no_id),
            .remote_id = pcep.number("remote_id", remote_id_range),
            .local_mac = pcep.station("local_mac"),
            .remote_mac = pcep.station("remote_mac"),
            .vlan = static_cast<uint16_t>(pcep.number("vlan", vlan_range)),
            .priority = static_cast<uint8_t>(priority),
            .at = pcep.at(),
            .id_at = pcep.at("id")};
}

multicast_entry read_multicast(table_reader &multicast)
{
    multicast.allow_only(node_keys_of("multicast"));
    return {.id = multicast.sound_number("id", id_range).value_or(no_id),
            .members = multicast.list("members", id_range),
            .at = multicast.at(),
            .id_at = multicast.at("id")};
}

ebcom_parameters read_ebcom(table_reader &ebcom)
{
    ebcom.allow_only(node_keys_of("ebcom"));
    const auto settings = ebcom.numbers("settings", 2, setting_range);
    return {.at = ebcom.at(),
            .ic_port_mtu = static_cast<uint16_t>(ebcom.number("ic_port_mtu", mtu_range)),
            .ether_type = static_cast<uint16_t>(ebcom.number("ether_type", ether_type_range)),
            .settings = {static_cast<uint8_t>(settings[0]), static_cast<uint8_t>(settings[1])}};
}

std::optional<uint8_t> read_mpid(table_reader &node)
{
    node.allow_only(node_keys_of("node"));
    if (!node.has("mpid"))
        return std::nullopt;
    return static_cast<uint8_t>(node.number("mpid", mpid_range));
}

void read_document(table_reader document, node_file_read &read)
{
    document.allow_only(node_keys_of(""));
    if (document.has("node"))
        if (auto node = document.table("node")) {
            read.node.mpid = read_mpid(*node);
            read.node.mpid_at = node->at("mpid");
        }
    if (auto ebcom = document.table("ebcom"))
        read.node.ebcom = read_ebcom(*ebcom);
    for (table_reader &path : document.tables("path")) {
        const size_t problems_before = read.problems.size();
        path_entry entry = read_path(path);
        if (read.problems.size() == problems_before)
            read.node.paths.push_back(entry);
    }
    for (table_reader &pcep : document.tables("pcep"))
        read.node.pceps.push_back(read_pcep(pcep));
    for (table_reader &multicast : document.tables("multicast"))
        read.node.groups.push_back(read_multicast(multicast));
    for (table_reader &traffic : document.tables("traffic")) {
        const size_t problems_before = read.problems.size();
        traffic_entry entry = read_traffic(traffic);
        if (read.problems.size() == problems_before)
            read.node.traffic.push_back(entry);
    }
}

// The parser names the setting that a document exceeds, which says nothing to the file's author.
std::string parser_message(std::string_view description)
{
    return printable(description.substr(0, description.find(" (TOML_")));
}

// The first place that must not reach the parser, if there is one.
std::optional<problem> hostile_line(std::string_view text)
{
    uint32_t line = 1;
    size_t dots = 0;
    for (const char c : text) {
        if (c == '.' && ++dots > most_dots_in_a_line)
            return problem{{line, 1}, fmt::format("the line has more than {} dots", most_dots_in_a_line)};
        if (c != '\n')
            continue;
        ++line;
        dots = 0;
    }
    return std::nullopt;
}

} // namespace

node_file_read read_node_file(const std::string &file)
{
    problem_list problems;
    const std::string text = text_of_file(file, problems);
    return problems.empty() ? parse_node_file(text) : node_file_read{{}, std::move(problems)};
}

node_file_read parse_node_file(std::string_view text)
{
    node_file_read read;
    if (auto hostile = hostile_line(text)) {
        read.problems.push_back(std::move(*hostile));
        return read;
    }
    try {
        const toml::table document = toml::parse(text);
        read_document(table_reader(document, "", read.problems), read);
    } catch (const toml::parse_error &error) {
        read.problems.push_back({position_of(error.source()), parser_message(error.description())});
    }
    return read;
}

} // namespace kelctl
