// Which ports there are, and where the library keeps those that carry EBCOM.
#include "kelctl/values/ic_port.h"

#include "kel/kel_node_names.h"
#include "kelctl/values/whole_number.h"
#include "text/nearest.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <vector>

namespace kelctl
{
namespace
{

// The library's table of ports by scheduler and queue. tests/kelctl/values/ic_port_test.cpp compares the two. No
// exported function returns it.
constexpr int32_t queues_of_a_scheduler = 8;
constexpr std::array<std::array<int32_t, queues_of_a_scheduler>, qos_schedulers - 1> ports_of_schedulers = {{
    {6, 7, 19, 20, 21, 22, 23, 24},
    {8, 9, 25, 26, 27, 28, 29, 30},
    {10, 11, 31, 32, 33, 34, 35, 36},
    {12, 13, 37, 38, 39, 40, 41, 42},
}};
constexpr int32_t port_by_itself = 0; // has a scheduler of its own, after those
constexpr size_t group_name_length = 4;

std::vector<std::string_view> branch_names()
{
    std::vector<std::string_view> names;
    names.reserve(KEL_IELL_PORT_COUNT);
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        names.emplace_back(kel_branch_name(port));
    return names;
}

} // namespace

// A walk over 51 names: a line has one port.
std::optional<int32_t> port_by_name(std::string_view name)
{
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        if (text::same_word(name, kel_branch_name(port)))
            return port;
    return std::nullopt;
}

// A number is not compared with names: every short number is near some name.
std::string no_such_port(std::string_view written)
{
    if (parse_whole_number(written))
        return fmt::format("unknown port {}", text::printable(written));
    return fmt::format("unknown port {}{}", text::in_quotes(written), text::did_you_mean(written, branch_names()));
}

bool is_port(int64_t number)
{
    return number >= 0 && number < KEL_IELL_PORT_COUNT;
}

bool carries_ebcom(int32_t port)
{
    return qos_row(port).has_value();
}

std::optional<qos_indexes> qos_row(int32_t port)
{
    if (port == port_by_itself)
        return qos_indexes{static_cast<int32_t>(ports_of_schedulers.size()), 0};
    for (int32_t scheduler = 0; const auto &ports : ports_of_schedulers) {
        const auto *const found = std::find(ports.begin(), ports.end(), port);
        if (found != ports.end())
            return qos_indexes{scheduler, static_cast<int32_t>(found - ports.begin())};
        ++scheduler;
    }
    return std::nullopt;
}

std::string port_text(int32_t port)
{
    return fmt::format("{} ({})", kel_branch_name(port), port);
}

std::string port_group(int32_t port)
{
    return std::string(kel_branch_name(port)).substr(0, group_name_length);
}

} // namespace kelctl
