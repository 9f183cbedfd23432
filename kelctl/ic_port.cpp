// Which ports there are, and the ranges that carry EBCOM.
#include "kelctl/ic_port.h"

#include "kel/kel_node_names.h"
#include "kelctl/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace kelctl
{
namespace
{

struct port_range {
    int32_t first;
    int32_t last;
};
constexpr port_range ranges_with_ebcom[] = {{0, 0}, {6, 13}, {19, 42}};
constexpr size_t group_name_length = 4;

} // namespace

std::optional<int32_t> port_by_name(std::string_view name)
{
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        if (same_word(name, kel_branch_name(port)))
            return port;
    return std::nullopt;
}

bool is_port(int64_t number)
{
    return number >= 0 && number < KEL_IELL_PORT_COUNT;
}

bool carries_ebcom(int32_t port)
{
    return std::any_of(std::begin(ranges_with_ebcom), std::end(ranges_with_ebcom),
                       [port](port_range range) { return port >= range.first && port <= range.last; });
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
