// The kinds of objects, and what an object of each is called.
#include "kelctl/views/leftover.h"

#include "kelctl/terminal/text.h"

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

template <typename Object, typename Name>
std::vector<std::string> names_of(const std::vector<Object> &objects, Name name)
{
    std::vector<std::string> names;
    names.reserve(objects.size());
    for (const Object &object : objects)
        names.push_back(name(object));
    return names;
}

std::string handle_name(handle self)
{
    return fmt::format("0x{:x}", self);
}

std::vector<kind> kinds_in(const snapshot &node)
{
    std::vector<kind> kinds = {
        {"scheduler", "scheduler", "schedulers",
         names_of(node.schedulers, [](const snapshot::scheduler &one) { return handle_name(one.self); })},
        {"queue", "queue", "queues",
         names_of(node.queues, [](const snapshot::queue &one) { return handle_name(one.self); })},
        {"path", "path", "paths", names_of(node.paths, [](const snapshot::path &one) { return to_text(one.mac); })},
        {"pcep", "PCEP", "PCEPs",
         names_of(node.pceps, [](const snapshot::pcep &one) { return std::to_string(one.id); })},
        {"group", "multicast group", "multicast groups",
         names_of(node.groups, [](const snapshot::group &one) { return std::to_string(one.id); })},
        {"interface", "interface", "interfaces", {}},
    };
    if (node.interface)
        kinds.back().names.push_back(fmt::format("Ethernet device {}", node.interface->eth_dev_id));
    std::erase_if(kinds, [](const kind &one) { return one.names.empty(); });
    return kinds;
}

std::string row(const kind &shown)
{
    const size_t count = shown.names.size();
    const auto end = shown.names.begin() + static_cast<std::ptrdiff_t>(std::min(count, most_names));
    std::vector<std::string> parts(shown.names.begin(), end);
    if (count > most_names)
        parts.push_back(fmt::format("and {} more", with_separators(count - most_names)));
    const std::string amount = fmt::format("{} {}:", with_separators(count), count == 1 ? shown.one : shown.several);
    return wrapped(fmt::format("  {:<20} ", amount), parts);
}

} // namespace

std::string leftover_view(const snapshot &node)
{
    std::string view;
    for (const kind &one : kinds_in(node))
        view += row(one);
    return view;
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
