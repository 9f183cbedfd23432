// The environment of a service, and the text of its messages.
#include "socket/service_manager.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sys/time.h>
#include <unistd.h>

namespace sockets
{
namespace
{

using std::chrono::microseconds;

// A manager that does not read for so long misses the message.
constexpr timeval patience = {.tv_sec = 1, .tv_usec = 0};

std::optional<int64_t> number_in(const char *variable)
{
    const char *text = std::getenv(variable);
    const std::string_view digits = text ? text : "";
    int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

// Who was asked to say that it is alive, and in what time, may be the parent of this process.
std::optional<microseconds> watchdog()
{
    const auto time = number_in("WATCHDOG_USEC");
    if (!time || *time <= 0 || number_in("WATCHDOG_PID").value_or(getpid()) != getpid())
        return std::nullopt;
    return microseconds(*time);
}

std::string one_line(std::string_view text)
{
    constexpr const char *blank = " \t\n";
    std::string line;
    while (!text.empty()) {
        std::string_view part = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(part.size() + 1, text.size()));
        part.remove_prefix(std::min(part.find_first_not_of(blank), part.size()));
        if (!part.empty())
            line.append(line.empty() ? "" : "; ").append(part);
    }
    return line;
}

std::string status_line(std::string_view status)
{
    return "STATUS=" + one_line(status) + '\n';
}

std::string monotonic_microseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::to_string(std::chrono::duration_cast<microseconds>(now).count());
}

} // namespace

// A path, or behind an @ a name that is in no file system.
service_manager::service_manager()
{
    const char *named = std::getenv("NOTIFY_SOCKET");
    const std::string_view name = named ? named : "";
    if (name.size() < 2 || name.size() > sizeof address_.sun_path || (name.front() != '/' && name.front() != '@'))
        return;
    address_.sun_family = AF_UNIX;
    std::memcpy(address_.sun_path, name.data(), name.size());
    if (name.front() == '@')
        address_.sun_path[0] = '\0';
    socket_ = descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket_.open())
        return;
    setsockopt(socket_.number(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    address_octets_ = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    if (const auto time = watchdog())
        interval_ = *time / 2;
}

void service_manager::ready(std::string_view status)
{
    send("READY=1\n" + status_line(status));
}

void service_manager::reloading(std::string_view status)
{
    send("RELOADING=1\nMONOTONIC_USEC=" + monotonic_microseconds() + '\n' + status_line(status));
}

void service_manager::stopping()
{
    send("STOPPING=1\n");
}

void service_manager::status(std::string_view status)
{
    send(status_line(status));
}

std::chrono::milliseconds service_manager::rest_within(std::chrono::milliseconds longest) const
{
    using std::chrono::milliseconds;
    if (!interval_)
        return longest;
    return std::clamp(std::chrono::ceil<milliseconds>(due_ - clock::now()), milliseconds(0), longest);
}

void service_manager::alive()
{
    const clock::time_point now = clock::now();
    if (!interval_ || now < due_)
        return;
    send("WATCHDOG=1\n");
    due_ = now + *interval_;
}

void service_manager::send(std::string_view message) const
{
    if (address_octets_ != 0)
        sendto(socket_.number(), message.data(), message.size(), MSG_NOSIGNAL,
               reinterpret_cast<const sockaddr *>(&address_), address_octets_);
}

} // namespace sockets
