// IC ports: their names, and which of them carry EBCOM.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Told to people who named a port that cannot be used.
inline constexpr std::string_view ports_with_ebcom =
    "0, RLU1P to RLU1W, RLU2P to RLU2W, RLU3P to RLU3W, RLU4P to RLU4W";

// The port of that branch name, in either case.
std::optional<int32_t> port_by_name(std::string_view name);

// What to tell people who wrote this name or number.
std::string no_such_port(std::string_view written);

// Whether a number, whatever its size, is that of a port.
bool is_port(int64_t number);

bool carries_ebcom(int32_t port);

// Where the library keeps a port's queue: the group of ports that share a scheduler, and the source in the group.
struct qos_place {
    int32_t scheduler;
    int32_t queue;
};

// None for a port without EBCOM.
std::optional<qos_place> qos_row(int32_t port);

// "RLU1P (6)"
std::string port_text(int32_t port);

// The unit whose ports share a scheduler: "RLU1"; "NONE" for port 0.
std::string port_group(int32_t port);

} // namespace kelctl
