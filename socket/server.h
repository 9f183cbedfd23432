// Serves a socket in one thread, that of its owner, who waits for whatever else it waits for too:
//
//     server here({.path = "/run/kelctl/node.sock"}, {.name = "kelctl", .version = 1});
//     pollfd wanted = {here.number(), POLLIN, 0};
//     while (poll(&wanted, 1, -1) >= 0)
//         here.serve([](std::string_view request) { return answer_to(request); });
//
// Requests of all clients are carried out one after the other, one of each client in turn, and a client's next one when
// its answer has been sent. Only the handler takes time: serve() never waits for a client. A client that goes beyond a
// limit gets a line that says so, if it reads, and is disconnected.
#pragma once

#include "socket/descriptor.h"
#include "socket/limits.h"
#include "socket/line_buffer.h"
#include "socket/listening_socket.h"
#include "socket/protocol.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace sockets
{

// Where a server listens.
struct address {
    std::string path;
    std::optional<gid_t> group = {}; // that may connect as well; none: the owner and root only
};

class server
{
public:
    // Returns the answer, a line without its end. What it throws, a std::exception, is answered as an error.
    using handler = std::function<std::string(std::string_view request)>;

    // `who`, an object, becomes part of the greeting. Throws socket_error, also when a process serves this address.
    server(const address &where, const protocol &spoken, const notation::document &who = notation::document::object(),
           const server_limits &granted = {});

    // Disconnects its clients and removes the socket.
    ~server();
    server(const server &) = delete;
    server &operator=(const server &) = delete;

    // Can be read when there is something to serve.
    int number() const;

    // Does what can be done now. Throws std::bad_alloc only, and what the handler throws that is no std::exception.
    void serve(const handler &answer);

    const std::string &path() const;
    size_t clients() const;
    bool sending() const; // an answer is not taken yet

    // Removes the socket, so that nobody finds it any more. From any thread.
    void withdraw() const;

    // For a child process of fork(): closes all that the server has open. The socket and the clients are its parent's.
    void leave_to_parent();

private:
    using clock = std::chrono::steady_clock;

    struct connection {
        connection(descriptor with, const server_limits &granted);

        bool waits_for_reader() const; // of an answer
        bool due() const;              // a request can be carried out
        bool busy() const;             // it keeps the server waiting
        void say(std::string line);
        bool send();
        bool receive();

        descriptor peer;
        line_buffer requests;
        std::string answer;                     // what is left of it
        size_t sent = 0;                        // octets of that
        clock::time_point since = clock::now(); // the latest progress: a request was begun or an answer taken
        uint32_t watched = 0;                   // events
        bool ended = false;
    };

    void accept_waiting();
    void welcome(descriptor peer);
    void attend(connection &one, const handler &answer);
    void carry_out(connection &one, const handler &answer);
    void refuse(connection &one, std::string_view why);
    void check_limits(connection &one);
    void watch(connection &one);
    void set_alarm();

    const std::string greeting_;
    const std::optional<gid_t> group_;
    const server_limits granted_;
    listening_socket listening_;
    descriptor events_;
    descriptor alarm_;
    std::list<connection> connections_;
    bool accepting_ = true;
};

} // namespace sockets
