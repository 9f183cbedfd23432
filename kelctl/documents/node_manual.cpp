// The sections of node.toml(5). Texts about tables are in kelctl/nodefile/node_keys.cpp, about keys in the rows of
// commands.
#include "kelctl/documents/node_manual.h"

#include "kelctl/language/help.h"
#include "kelctl/nodefile/node_keys.h"
#include "options/documents/roff.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr std::string_view description =
    R"(A node file describes a node for kelctl(1): parameters, paths with their shaping, end points and multicast groups. It is
written in TOML. kelctl checks the whole file before it starts anything, and reports each problem as
file:line:column: message.

Each table is equivalent to a command of kelctl(1), and each key to one of its arguments. A value is written as for the
argument, as a number or a string.

)";

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

std::string whether_needed(const argument &argument, const node_table &table)
{
    if (!argument.instead.empty())
        return fmt::format("Either this or {} is required.", table.key_of(argument.instead));
    if (!argument.needs.empty())
        return fmt::format("Requires {}.", table.key_of(argument.needs));
    return argument.required && argument.otherwise.empty() ? "Required." : "";
}

// Elements of an array are commands of their own, whose help says what each is.
void add_key(options::roff_page &page, const node_key &key, const node_table &table, const command_table &rows)
{
    if (!key.each.empty()) {
        page.item(key.name, fmt::format("array; each element: {}", rows.find(key.each)->help));
        return;
    }
    const argument &meant = *rows.find(table.row)->find_argument(key.argument);
    page.item(key.name, fmt::format("{}.\n{}", argument_text(meant), whether_needed(meant, table)));
}

void add_table(options::roff_page &page, const node_table &table, const command_table &rows)
{
    page.subsection(table.heading());
    page.text(fmt::format("{}\nEquivalent to \"{}\".", table.help, table.row));
    for (const node_key &key : table.keys)
        add_key(page, key, table, rows);
}

} // namespace

std::string node_file_manual(const command_table &rows, std::string_view version)
{
    options::roff_page page("node.toml", 5, "kelctl", version, "description of a node for kelctl");
    page.section("DESCRIPTION");
    page.text(fmt::format("{}{}", description, value_notations()));
    page.section("TABLES AND KEYS");
    for (const node_table &table : node_tables())
        add_table(page, table, rows);
    page.section("EXAMPLE");
    page.example(example);
    page.section("FILES");
    page.item("/usr/share/doc/kelctl/examples/node.toml", "An example with every table and key.");
    page.section("SEE ALSO");
    page.text("kelctl(1)");
    return page.written();
}

} // namespace kelctl
