// Connecting, sending and receiving, none of which waits longer than the client's patience. Its socket never makes it wait, so no
// signal interrupts these calls.
#include "socket/client.h"

#include "notation/json.h"
#include "socket/listening_socket.h"
#include "socket/socket_error.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <utility>

namespace sockets
{
namespace
{

using clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds pause_before_full_server(10);

} // namespace

client::client(const std::string &path, const protocol &spoken, const client_limits &granted, const waiter &wait)
    : path_(path), granted_(granted), socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
      received_(granted.longest_answer)
{
    if (!socket_.open())
        throw socket_error(path_, "no socket can be made", errno);
    connect();
    const waiter patiently = [this](int number) { return within_patience(number, POLLIN); };
    auto first = notation::try_read_json(receive(wait ? wait : patiently));
    if (!first)
        throw socket_error(path_, "the server does not greet in JSON");
    if (const auto objection = objection_to(*first, spoken))
        throw socket_error(path_, *objection);
    greeting_ = *std::move(first);
}

// A server that has enough to do accepts later.
void client::connect()
{
    const sockaddr_un address = address_of(path_);
    const clock::time_point end = clock::now() + granted_.patience;
    while (::connect(socket_.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        if (errno == ECONNREFUSED)
            throw socket_error(path_, "no process serves this socket any more");
        if (errno != EAGAIN)
            throw socket_error(path_, "no connection", errno);
        if (clock::now() >= end)
            throw socket_error(path_, "the server accepts no connection");
        std::this_thread::sleep_for(pause_before_full_server);
    }
}

std::string client::ask(std::string_view request)
{
    return ask(request, [this](int number) { return within_patience(number, POLLIN); });
}

std::string client::ask(std::string_view request, const waiter &wait)
{
    send(std::string(request) + '\n');
    return receive(wait);
}

// What a server that disconnects has said before that is its answer.
void client::send(std::string_view request)
{
    while (!request.empty()) {
        const ssize_t octets = ::send(socket_.number(), request.data(), request.size(), MSG_NOSIGNAL);
        if (octets >= 0) {
            request.remove_prefix(static_cast<size_t>(octets));
            continue;
        }
        if (errno == EPIPE || errno == ECONNRESET)
            return;
        if (errno != EAGAIN)
            throw socket_error(path_, "the request cannot be sent", errno);
        if (!within_patience(socket_.number(), POLLOUT))
            throw socket_error(path_, "the server does not read the request");
    }
}

std::string client::receive(const waiter &wait)
{
    std::array<char, 65'536> piece;
    for (;;) {
        if (received_.too_long())
            throw socket_error(path_,
                               "the answer is longer than " + std::to_string(granted_.longest_answer) + " octets");
        if (auto line = received_.take_line())
            return *std::move(line);
        const ssize_t octets = recv(socket_.number(), piece.data(), piece.size(), 0);
        if (octets == 0 || (octets < 0 && errno == ECONNRESET))
            throw socket_error(path_, "the server has disconnected");
        if (octets > 0)
            received_.append({piece.data(), static_cast<size_t>(octets)});
        else if (errno != EAGAIN)
            throw socket_error(path_, "the answer cannot be read", errno);
        else if (!wait(socket_.number()))
            throw socket_error(path_, "no answer came");
    }
}

bool client::within_patience(int number, short event) const
{
    pollfd wanted = {.fd = number, .events = event, .revents = 0};
    return poll(&wanted, 1, static_cast<int>(granted_.patience.count())) != 0;
}

} // namespace sockets
