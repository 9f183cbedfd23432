// The end of a service manager: a datagram socket that hears what services say.
#pragma once

#include "socket/descriptor.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>

namespace sockets
{

class managing_socket
{
public:
    // As NOTIFY_SOCKET names it: a path, or behind an @ a name that is in no file system.
    explicit managing_socket(const std::string &name) : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.data(), name.size());
        if (name.front() == '@')
            address.sun_path[0] = '\0';
        const auto octets = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        open_ = bind(socket_.number(), reinterpret_cast<const sockaddr *>(&address), octets) == 0;
    }

    bool open() const
    {
        return open_;
    }

    // The next message, without the end of its last line; empty when none comes in that time.
    std::string hear(std::chrono::milliseconds longest = std::chrono::minutes(1)) const
    {
        pollfd waited = {socket_.number(), POLLIN, 0};
        std::array<char, 4096> message;
        if (poll(&waited, 1, static_cast<int>(longest.count())) != 1)
            return "";
        const ssize_t octets = recv(socket_.number(), message.data(), message.size(), 0);
        const std::string_view lines(message.data(), octets < 0 ? 0 : static_cast<size_t>(octets));
        return std::string(lines.substr(0, lines.rfind('\n')));
    }

    // Messages that have come, without the one that the watchdog wants.
    std::string hear_other_than_alive() const
    {
        std::string message = hear();
        while (message == "WATCHDOG=1")
            message = hear();
        return message;
    }

private:
    descriptor socket_;
    bool open_ = false;
};

} // namespace sockets
