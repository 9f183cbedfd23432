// Where HTTP is served: "127.0.0.1:9477", "[::1]:9477", "unix:/run/kel-exporter/http.sock". What is served there is
// http_server.h.
#pragma once

#include "socket/descriptor.h"
#include "socket/listening_socket.h"

#include <memory>
#include <string>

namespace kel_exporter
{

class listener
{
public:
    // Throws std::runtime_error: this is no such address, or nobody can listen there. A Unix socket is for the user
    // that the program runs as, and root.
    explicit listener(const std::string &address);

    // The listening descriptor, which stays this object's.
    int number() const;

    // "http://127.0.0.1:9477/", with the port that the kernel chose where it is 0; of a Unix socket the address.
    const std::string &text() const
    {
        return text_;
    }

private:
    std::unique_ptr<sockets::listening_socket> local_; // or else
    sockets::descriptor network_;
    std::string text_;
};

} // namespace kel_exporter
