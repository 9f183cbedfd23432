// Why a socket cannot be served or asked: its path and the reason.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace sockets
{

struct socket_error : std::runtime_error {
    socket_error(std::string_view path, std::string_view reason);
    socket_error(std::string_view path, std::string_view reason, int error); // an errno, whose text is appended
};

} // namespace sockets
