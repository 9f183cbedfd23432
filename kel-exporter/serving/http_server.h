// Serves HTTP in one thread, that of its owner, who waits for whatever else it waits for too:
//
//     http_server server(listener.number(), [](const http_request &asked) { return http_answer{.body = "..."}; });
//     pollfd wanted = {server.number(), POLLIN, 0};
//     while (poll(&wanted, 1, server.milliseconds()) >= 0)
//         server.serve();
//
// Only GET and HEAD are answered, and no request has a body. The limits are in http_server.cpp.
#pragma once

#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>

struct MHD_Connection;
struct MHD_Daemon;

namespace kel_exporter
{

// Valid while the handler runs.
struct http_request {
    std::string_view path;
    std::string_view accept; // the header
};

// Sent with `security` of http_server.cpp, which all answers have.
struct http_answer {
    unsigned status = 200;
    std::string_view type = "text/plain; charset=utf-8";
    std::string body;
    std::string policy = "default-src 'none'"; // the header Content-Security-Policy
};

// The handler runs within serve(), and must not wait: all clients wait with it. What it throws becomes an answer with
// the status 500.
class http_server
{
public:
    using handler = std::function<http_answer(const http_request &asked)>;
    using clock = std::chrono::steady_clock;

    // A client that does not complete a request within `patience`, and take its answer, is disconnected. The listening
    // socket stays the caller's. Throws std::runtime_error.
    http_server(int listening, handler answer, std::chrono::milliseconds patience = std::chrono::seconds(30));
    ~http_server();
    http_server(const http_server &) = delete;
    http_server &operator=(const http_server &) = delete;

    // Can be read when there is something to serve.
    int number() const;

    // After which something is to be served in any case.
    int milliseconds() const;

    // Does what can be done now.
    void serve();

private:
    struct client {
        int number;
        clock::time_point since; // the connection, or the end of its latest request
    };
    struct callbacks; // of the HTTP library

    void end_overdue();

    const handler answer_;
    const std::chrono::milliseconds patience_;
    std::list<client> clients_;
    std::unique_ptr<MHD_Daemon, void (*)(MHD_Daemon *)> daemon_;
};

} // namespace kel_exporter
