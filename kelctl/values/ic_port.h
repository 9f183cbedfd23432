// IC ports: their names, and which of them carry EBCOM.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// For messages about a port that does not carry EBCOM: those that do.
inline constexpr std::string_view ports_with_ebcom =
    "0, RLU1P to RLU1W, RLU2P to RLU2W, RLU3P to RLU3W, RLU4P to RLU4W";

// The port of a branch name such as "RLU1P", in upper or lower case. None for any other text, a number included.
std::optional<int32_t> port_by_name(std::string_view name);

// The message for a name or number that no port has: "unknown port "RLU1X"; did you mean ...".
std::string no_such_port(std::string_view written);

// True for 0 to 50. Takes 64 bits, so that a number from outside is checked before it is narrowed.
bool is_port(int64_t number);

// True for the ports that can have paths: 0, 6 to 13 and 19 to 42.
bool carries_ebcom(int32_t port);

// The indexes by which the library keeps a port's queue: the scheduler that its group of ports shares, and the queue
// below that scheduler. Both count from 0.
struct qos_indexes {
    int32_t scheduler;
    int32_t queue;
};

// How many schedulers the ports have: one for each unit, and that of port 0 behind them.
inline constexpr size_t qos_schedulers = 5;

// None for a port without EBCOM.
std::optional<qos_indexes> qos_row(int32_t port);

// "RLU1P (6)"
std::string port_text(int32_t port);

// The unit whose ports share a scheduler: "RLU1"; "NONE" for port 0.
std::string port_group(int32_t port);

} // namespace kelctl
