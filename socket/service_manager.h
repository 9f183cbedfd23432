// Tells the service manager that started this process how it is: a datagram for each message, to the socket that the
// environment names (NOTIFY_SOCKET), in the protocol of systemd's services of Type=notify.
//
//     service_manager manager;
//     manager.ready("the node is up");
//     while (poll(&wanted, 1, static_cast<int>(manager.rest_within(longest).count())) >= 0)
//         manager.alive();
//
// Without a manager nothing is sent, and nothing waits for one: a message that cannot be sent is lost, as one from a
// process that nobody manages is. `status` is for people; its lines become one.
#pragma once

#include "socket/descriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>

namespace sockets
{

class service_manager
{
public:
    // Reads the environment, and leaves it as it is: children of a service are not its main process, and systemd takes
    // their messages for nobody's.
    service_manager();

    void ready(std::string_view status);
    void reloading(std::string_view status); // until ready()
    void stopping();
    void status(std::string_view status);

    // How long the process may do nothing before alive() is due: `longest`, or less where a watchdog is asked for.
    std::chrono::milliseconds rest_within(std::chrono::milliseconds longest) const;

    // Says so when it is due, at half of the watchdog's time; never without a watchdog.
    void alive();

private:
    using clock = std::chrono::steady_clock;

    void send(std::string_view message) const;

    sockaddr_un address_ = {};
    socklen_t address_octets_ = 0; // 0: there is no manager
    descriptor socket_;
    std::optional<clock::duration> interval_; // of messages to the watchdog; none: there is none
    clock::time_point due_;
};

} // namespace sockets
