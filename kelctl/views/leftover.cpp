// The kinds of objects, and what an object of each is called.
#include "kelctl/views/leftover.h"

#include "terminal/folding.h"
#include "text/quantity.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace kelctl
{
namespace
{

constexpr size_t most_names = 12; // of one kind, for people

struct kind {
    std::string_view key; // for programs
    std::string_view one;
    std::string_view several;
    std::vector<std::string> names;
};

template <typename Object>
std::vector<std::string> names_of(const std::vector<Object> &objects, std::string (*name)(const Object &))
{
    std::vector<std::string> names(objects.size());
    std::ranges::transform(objects, names.begin(), name);
    return names;
}

template <typename Object> std::string handle_of(const Object &object)
{
    return fmt::format("0x{:x}", object.self);
}

template <typename Object> std::string id_of(const Object &object)
{
    return std::to_string(object.id);
}

std::string mac_of(const snapshot::path &path)
{
    return to_text(path.mac);
}

// In the order in which a bring-up makes them. Kinds without an object are left out.
std::vector<kind> kinds_in(const snapshot &node)
{
    std::vector<kind> kinds = {
        {"scheduler", "scheduler", "schedulers", names_of(node.schedulers, handle_of)},
        {"queue", "queue", "queues", names_of(node.queues, handle_of)},
        {"path", "path", "paths", names_of(node.paths, mac_of)},
        {"pcep", "PCEP", "PCEPs", names_of(node.pceps, id_of)},
        {"group", "multicast group", "multicast groups", names_of(node.groups, id_of)},
        {"interface", "interface", "interfaces", {}},
    };
    if (node.interface)
        kinds.back().names.push_back(fmt::format("Ethernet device {}", node.interface->eth_dev_id));
    std::erase_if(kinds, [](const kind &one) { return one.names.empty(); });
    return kinds;
}

std::string amount_of(const kind &shown)
{
    return text::count_of(shown.names.size(), shown.one, shown.several);
}

// There may be thousands of paths: the first names show which ones they are.
std::string row(const kind &shown, size_t width)
{
    const size_t count = shown.names.size();
    std::vector<std::string> parts = shown.names;
    if (count > most_names) {
        parts.resize(most_names);
        parts.push_back(fmt::format("and {} more", text::with_separators(count - most_names)));
    }
    return terminal::wrapped(fmt::format("  {:<20} ", amount_of(shown) + ":"), parts, width);
}

} // namespace

std::string leftover_view(const snapshot &node, size_t width)
{
    std::string view;
    for (const kind &one : kinds_in(node))
        view += row(one, width);
    return view;
}

std::string contents_text(const snapshot &node)
{
    std::vector<std::string> amounts;
    for (const kind &one : kinds_in(node))
        amounts.push_back(amount_of(one));
    return text::joined(amounts, ", ");
}

fields leftover_fields(const snapshot &node)
{
    fields objects = fields::array();
    for (const kind &one : kinds_in(node))
        for (const std::string &name : one.names)
            objects.push_back({{"kind", one.key}, {"name", name}});
    return objects;
}

} // namespace kelctl
