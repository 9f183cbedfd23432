// Asks a server, from the other end of its socket.
//
//     client node("/run/kelctl/node.sock", {.name = "kelctl", .version = 1});
//     const std::string answer = node.ask(R"({"function":"time"})");
#pragma once

#include "notation/document.h"
#include "socket/descriptor.h"
#include "socket/limits.h"
#include "socket/line_buffer.h"
#include "socket/protocol.h"

#include <functional>
#include <string>
#include <string_view>

namespace sockets
{

// Every function throws socket_error; the client is of no use after that.
class client
{
public:
    // `wait` returns true when the descriptor can be read, false when what it would bring is not wanted any more.
    using waiter = std::function<bool(int descriptor)>;

    // Connects, and checks that the server speaks this version of the protocol. `wait`: for its greeting; null: as long as
    // the client is patient.
    client(const std::string &path, const protocol &spoken, const client_limits &granted = {},
           const waiter &wait = nullptr);

    // The server's first line.
    const notation::document &greeting() const
    {
        return greeting_;
    }

    // Sends a line, without its end, and returns the one that answers it, whatever it says.
    std::string ask(std::string_view request);

    // The same for a request that takes its time.
    std::string ask(std::string_view request, const waiter &wait);

private:
    void connect();
    void send(std::string_view request);
    std::string receive(const waiter &wait);
    bool within_patience(int descriptor, short event) const;

    const std::string path_;
    const client_limits granted_;
    descriptor socket_;
    line_buffer received_;
    notation::document greeting_;
};

} // namespace sockets
