// What of node files is told in which section.
#include "kelctl/documents/node_manual.h"

#include "kelctl/documents/roff.h"
#include "kelctl/nodefile/node_keys.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr std::string_view description =
    R"(A node file tells kelctl(1) what a node consists of: parameters, paths with their shaping, end points and multicast
groups. It is written in TOML. The whole of it is checked before anything is started; what is wrong is told as
file:line:column: message.

Numbers may be decimal, or hexadecimal after 0x.)";

constexpr std::string_view example = R"([ebcom]
ic_port_mtu = 1500
ether_type = 0x88B5
settings = [1, 2]

[[path]]
dst_mac = "02:00:00:02:00:01"
port = "RLU1P"
[path.shaping]
rate = "100 Mbit/s"
burst = "64 KiB"
threshold = "1 MiB"

[[pcep]]
id = 7
remote_id = 9
local_mac = "02:00:00:03:00:01"
remote_mac = "02:00:00:02:00:01"
vlan = 100

[[multicast]]
id = 300
members = [7])";

std::string without(const node_key &key)
{
    if (!key.instead.empty())
        return fmt::format("Either this or {} has to be given.", key.instead);
    return key.otherwise.empty() ? "Has to be given." : fmt::format("Without it: {}.", key.otherwise);
}

void add_table(roff_page &page, const node_table &table)
{
    page.subsection(table.heading);
    page.text(table.help);
    for (const node_key &key : table.keys)
        page.item(key.name, fmt::format("{}.\nValue: {}.\n{}", key.help, key.value, without(key)));
}

} // namespace

std::string node_file_manual(std::string_view version)
{
    roff_page page("node.toml", 5, version, "what a node consists of");
    page.section("DESCRIPTION");
    page.text(description);
    page.section("TABLES AND KEYS");
    for (const node_table &table : node_tables())
        add_table(page, table);
    page.section("EXAMPLE");
    page.example(example);
    page.section("SEE ALSO");
    page.text("kelctl(1)");
    return page.written();
}

} // namespace kelctl
