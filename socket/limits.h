// What one side of a socket grants the other. Lengths are octets of a line, without its end.
#pragma once

#include <chrono>
#include <cstddef>

namespace sockets
{

struct server_limits {
    size_t longest_request = size_t{1} << 20;
    size_t longest_answer = size_t{64} << 20;
    size_t most_clients = 16;
    std::chrono::milliseconds patience{10'000}; // that a begun request, and reading an answer, may take
};

struct client_limits {
    size_t longest_answer = size_t{64} << 20;
    std::chrono::milliseconds patience{10'000}; // that connecting and its greeting, sending, and an answer may take
};

} // namespace sockets
