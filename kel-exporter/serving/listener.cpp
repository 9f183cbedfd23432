// Numeric addresses only: which address a name means is decided elsewhere, and may be another machine's address.
#include "kel-exporter/serving/listener.h"

#include "text/printable.h"

#include <fmt/core.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <netdb.h>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/socket.h>
#include <system_error>

namespace kel_exporter
{
namespace
{

constexpr std::string_view local = "unix:";
constexpr int backlog = 128;

using address_list = std::unique_ptr<addrinfo, void (*)(addrinfo *)>;

// getaddrinfo() takes the low 16 bits of any number.
bool is_port(std::string_view text)
{
    uint16_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && stop == text.data() + text.size();
}

// "HOST:PORT", an IPv6 host in brackets.
address_list addresses(const std::string &written)
{
    const size_t colon = written.rfind(':');
    std::string host = written.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']'))
        host = host.substr(1, host.size() - 2);
    const std::string port = colon == written.npos ? "" : written.substr(colon + 1);
    addrinfo hints = {};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (host.empty() || !is_port(port) || getaddrinfo(host.c_str(), port.c_str(), &hints, &found) != 0)
        throw std::runtime_error(fmt::format(
            "{} is no address to listen on, such as 127.0.0.1:9477, [::1]:9477 or unix:/run/kel-exporter/http.sock",
            text::in_quotes(written)));
    return {found, freeaddrinfo};
}

// SO_REUSEADDR: a service that is started again does not wait for the connections of the one before.
sockets::descriptor listening(const std::string &written)
{
    const address_list where = addresses(written);
    sockets::descriptor made(socket(where->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, where->ai_protocol));
    const int yes = 1;
    setsockopt(made.number(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (bind(made.number(), where->ai_addr, where->ai_addrlen) != 0 || listen(made.number(), backlog) != 0)
        throw std::runtime_error(fmt::format("{}: {}", written, std::generic_category().message(errno)));
    return made;
}

// Asked of the kernel, which chose the port if it was 0.
std::string text_of(int listening)
{
    sockaddr_storage address = {};
    socklen_t octets = sizeof address;
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> port{};
    getsockname(listening, generic, &octets);
    getnameinfo(generic, octets, host.data(), host.size(), port.data(), port.size(), NI_NUMERICHOST | NI_NUMERICSERV);
    const bool brackets = address.ss_family == AF_INET6;
    return fmt::format("http://{}{}{}:{}/", brackets ? "[" : "", host.data(), brackets ? "]" : "", port.data());
}

} // namespace

listener::listener(const std::string &address)
{
    if (address.starts_with(local)) {
        local_ = std::make_unique<sockets::listening_socket>(address.substr(local.size()), std::nullopt);
        text_ = address;
        return;
    }
    network_ = listening(address);
    text_ = text_of(network_.number());
}

int listener::number() const
{
    return local_ ? local_->number() : network_.number();
}

} // namespace kel_exporter
