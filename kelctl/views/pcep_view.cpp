// The layout of PCEPs and groups.
#include "kelctl/views/pcep_view.h"

#include "kel/kel_node_names.h"
#include "kelctl/terminal/text.h"
#include "kelctl/values/mp_id.h"

#include <fmt/core.h>

namespace kelctl
{
namespace
{

constexpr std::string_view pcep_columns = "{:>4}{:>10}{:>5}{:>5}  {:<22} {:<22} {}";

std::string without_trailing_blanks(const std::string &text)
{
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string placed(const mac_address &mac)
{
    return fmt::format("{} {}", to_text(mac), kel_location_name(location_of(mac, own_mp_id())));
}

std::string pcep_row(const snapshot::pcep &pcep)
{
    const std::string row = fmt::format(pcep_columns, pcep.id, pcep.remote_id, pcep.vlan, pcep.priority,
                                        placed(pcep.local_mac), placed(pcep.remote_mac), pcep.bound ? "EHSFP" : "");
    return without_trailing_blanks(row) + "\n";
}

std::string pcep_table(const std::vector<snapshot::pcep> &pceps, const painter &paint)
{
    if (pceps.empty())
        return "";
    const std::string heading =
        fmt::format(pcep_columns, "PCEP", "remote id", "VLAN", "prio", "local", "remote", "bound to");
    std::string table = paint(colour::heading, heading) + "\n";
    for (const snapshot::pcep &pcep : pceps)
        table += pcep_row(pcep);
    return table + "\n";
}

std::string group_table(const std::vector<snapshot::group> &groups, const painter &paint)
{
    if (groups.empty())
        return "";
    std::string table = paint(colour::heading, "Group  members") + "\n";
    for (const snapshot::group &group : groups)
        table += fmt::format("{:>5}  {}\n", group.id, group.members.empty() ? "none" : joined(group.members, " "));
    return table + "\n";
}

} // namespace

std::string pcep_view(const snapshot &node, const painter &paint)
{
    return pcep_table(node.pceps, paint) + group_table(node.groups, paint);
}

} // namespace kelctl
