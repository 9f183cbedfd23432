// What a server does in one turn: it takes new clients in, and for each sends, receives, carries out one request, and
// checks the limits. An epoll descriptor tells its owner when the next turn is due, with a timer for what is overdue.
#include "socket/server.h"

#include "socket/peer.h"
#include "socket/socket_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <utility>

namespace sockets
{
namespace
{

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds pause_without_descriptors(100); // before the next client is accepted

// False, with errno set, when the system refuses: what is not watched would wait for ever.
bool watch_events(int events, int operation, int descriptor, uint32_t wanted)
{
    epoll_event event = {.events = wanted, .data = {.fd = descriptor}};
    return epoll_ctl(events, operation, descriptor, &event) == 0;
}

// No socket here makes its calls wait, so no signal interrupts them.
bool would_wait()
{
    return errno == EAGAIN;
}

std::string duration_text(milliseconds time)
{
    return std::to_string(time.count()) + " ms";
}

} // namespace

server::connection::connection(descriptor with, const server_limits &granted)
    : peer(std::move(with)), requests(granted.longest_request)
{
}

bool server::connection::waits_for_reader() const
{
    return !answer.empty();
}

bool server::connection::due() const
{
    return !ended && !waits_for_reader() && requests.has_line() && !requests.too_long();
}

bool server::connection::busy() const
{
    return waits_for_reader() || (!requests.empty() && !requests.has_line());
}

void server::connection::say(std::string line)
{
    answer = std::move(line) + '\n';
    sent = 0;
    since = clock::now();
}

// False when the peer is gone.
bool server::connection::send()
{
    while (waits_for_reader()) {
        const ssize_t octets = ::send(peer.number(), answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (octets < 0)
            return would_wait();
        sent += static_cast<size_t>(octets);
        if (sent < answer.size())
            continue;
        std::string().swap(answer);
        since = clock::now();
    }
    return true;
}

// Until there is a request. False when the peer is gone, or sends no more.
bool server::connection::receive()
{
    std::array<char, 65'536> piece;
    while (!requests.has_line() && !requests.too_long()) {
        const ssize_t octets = recv(peer.number(), piece.data(), piece.size(), 0);
        if (octets <= 0)
            return octets < 0 && would_wait();
        if (requests.empty())
            since = clock::now();
        requests.append({piece.data(), static_cast<size_t>(octets)});
    }
    return true;
}

server::server(const address &where, const protocol &spoken, const notation::document &who,
               const server_limits &granted)
    : greeting_(greeting(spoken, who)), group_(where.group), granted_(granted), listening_(where.path, where.group),
      events_(epoll_create1(EPOLL_CLOEXEC)), alarm_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))
{
    if (!events_.open() || !alarm_.open() ||
        !watch_events(events_.number(), EPOLL_CTL_ADD, listening_.number(), EPOLLIN) ||
        !watch_events(events_.number(), EPOLL_CTL_ADD, alarm_.number(), EPOLLIN))
        throw socket_error(where.path, "it cannot be served", errno);
}

server::~server() = default;

int server::number() const
{
    return events_.number();
}

const std::string &server::path() const
{
    return listening_.path();
}

size_t server::clients() const
{
    return connections_.size();
}

bool server::sending() const
{
    return std::ranges::any_of(connections_, &connection::waits_for_reader);
}

void server::withdraw() const
{
    listening_.remove();
}

void server::leave_to_parent()
{
    listening_.leave_to_parent();
    connections_.clear();
    events_ = descriptor();
    alarm_ = descriptor();
}

void server::serve(const handler &answer)
{
    accept_waiting();
    for (connection &one : connections_)
        attend(one, answer);
    std::erase_if(connections_, [](const connection &one) { return one.ended; });
    set_alarm();
}

// A process without free descriptors would be woken again and again for a client that it cannot accept.
void server::accept_waiting()
{
    bool accepting = true;
    for (size_t accepted = 0; accepted <= granted_.most_clients; ++accepted) {
        descriptor peer(accept4(listening_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (peer.open()) {
            welcome(std::move(peer));
            continue;
        }
        accepting = would_wait() || errno == ECONNABORTED;
        break;
    }
    if (accepting != accepting_ &&
        watch_events(events_.number(), EPOLL_CTL_MOD, listening_.number(), accepting ? uint32_t{EPOLLIN} : 0))
        accepting_ = accepting;
}

void server::welcome(descriptor peer)
{
    connection fresh(std::move(peer), granted_);
    if (!may_connect(fresh.peer.number(), group_))
        return refuse(fresh, "this socket is for its owner" + std::string(group_ ? " and its group" : "") + " only");
    if (connections_.size() >= granted_.most_clients)
        return refuse(fresh, "too many clients: the limit is " + std::to_string(granted_.most_clients));
    if (!watch_events(events_.number(), EPOLL_CTL_ADD, fresh.peer.number(), fresh.watched))
        return refuse(fresh, std::strerror(errno));
    fresh.say(greeting_);
    connections_.push_back(std::move(fresh));
}

void server::attend(connection &one, const handler &answer)
{
    one.ended = !one.send() || (!one.waits_for_reader() && !one.receive());
    if (one.due())
        carry_out(one, answer);
    if (!one.ended)
        check_limits(one);
    if (!one.ended)
        watch(one);
}

// Nobody is late because of the time that the handler takes.
void server::carry_out(connection &one, const handler &answer)
{
    const clock::time_point begin = clock::now();
    std::string said;
    try {
        said = answer(*one.requests.take_line());
    } catch (const std::exception &error) {
        said = error_line(error.what());
    }
    if (said.size() > granted_.longest_answer)
        said = error_line("the answer has " + std::to_string(said.size()) + " octets, and may have " +
                          std::to_string(granted_.longest_answer));
    const clock::duration taken = clock::now() - begin;
    for (connection &each : connections_)
        each.since += taken;
    one.say(std::move(said));
    one.ended = !one.send();
}

// What is left of an answer is lost: a line that says why would become its middle.
void server::refuse(connection &one, std::string_view why)
{
    if (!one.waits_for_reader()) {
        one.say(error_line(why));
        one.send();
    }
    one.ended = true;
}

void server::check_limits(connection &one)
{
    if (!one.waits_for_reader() && one.requests.too_long())
        return refuse(one, "the request is longer than " + std::to_string(granted_.longest_request) + " octets");
    if (one.busy() && clock::now() >= one.since + granted_.patience)
        return refuse(one, "the request was not complete after " + duration_text(granted_.patience));
}

// A client is not read while its answer waits, or its next request.
void server::watch(connection &one)
{
    const uint32_t wanted = one.waits_for_reader() ? uint32_t{EPOLLOUT} : one.due() ? 0 : uint32_t{EPOLLIN};
    if (wanted != std::exchange(one.watched, wanted))
        one.ended = !watch_events(events_.number(), EPOLL_CTL_MOD, one.peer.number(), wanted);
}

// Also makes the timer unreadable until then.
void server::set_alarm()
{
    nanoseconds next = accepting_ ? nanoseconds::max() : nanoseconds(pause_without_descriptors);
    const clock::time_point now = clock::now();
    for (const connection &one : connections_) {
        if (one.due())
            next = nanoseconds(0);
        if (one.busy())
            next = std::min<nanoseconds>(next, one.since + granted_.patience - now);
    }
    itimerspec alarm = {};
    if (next != nanoseconds::max()) {
        const auto left = std::max<nanoseconds::rep>(next.count(), 1); // 0 would never come
        alarm.it_value = {.tv_sec = left / 1'000'000'000, .tv_nsec = left % 1'000'000'000};
    }
    timerfd_settime(alarm_.number(), 0, &alarm, nullptr);
}

} // namespace sockets
