// The HTTP library's callbacks, and who takes too long. What is answered is the caller's (main.cpp).
#include "kel-exporter/serving/http_server.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <exception>
#include <fcntl.h>
#include <microhttpd.h>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <utility>

namespace kel_exporter
{
namespace
{

constexpr unsigned most_clients = 100;
constexpr size_t memory_of_a_client = 16'384; // octets, for the request line and the headers

// Headers of every answer: nothing is kept, guessed, or handed to other sites.
constexpr const char *security[][2] = {
    {MHD_HTTP_HEADER_CACHE_CONTROL, "no-store"},     {MHD_HTTP_HEADER_VARY, "Accept"},
    {"X-Content-Type-Options", "nosniff"},           {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
};

void add_header(MHD_Response *response, const char *name, const std::string &value)
{
    MHD_add_response_header(response, name, value.c_str());
}

// MUST_COPY: the answer is gone before the library has sent it.
MHD_Result send(MHD_Connection *connection, const http_answer &answer)
{
    MHD_Response *response = MHD_create_response_from_buffer(answer.body.size(), const_cast<char *>(answer.body.data()),
                                                             MHD_RESPMEM_MUST_COPY);
    if (!response)
        return MHD_NO;
    for (const auto &[name, value] : security)
        add_header(response, name, value);
    add_header(response, "Content-Security-Policy", answer.policy);
    add_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, std::string(answer.type));
    if (answer.status == MHD_HTTP_METHOD_NOT_ALLOWED)
        add_header(response, MHD_HTTP_HEADER_ALLOW, "GET, HEAD");
    const MHD_Result sent = MHD_queue_response(connection, answer.status, response);
    MHD_destroy_response(response);
    return sent;
}

// A request whose body is not wanted is answered before it is read, and the connection ends.
bool reads_only(std::string_view method)
{
    return method == MHD_HTTP_METHOD_GET || method == MHD_HTTP_METHOD_HEAD;
}

std::string_view header(MHD_Connection *connection, const char *name)
{
    const char *value = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name);
    return value ? value : "";
}

} // namespace

struct http_server::callbacks {
    // Called when the headers are there, for each part of a body, and at the end of the request.
    static MHD_Result answer(void *self, MHD_Connection *connection, const char *path, const char *method, const char *,
                             const char *, size_t *octets, void **begun)
    {
        if (!reads_only(method))
            return send(connection, {.status = MHD_HTTP_METHOD_NOT_ALLOWED, .body = "only GET and HEAD\n"});
        if (!std::exchange(*begun, self))
            return MHD_YES;
        if (*octets != 0)
            return MHD_NO;
        const http_request asked = {path, header(connection, MHD_HTTP_HEADER_ACCEPT)};
        try {
            return send(connection, static_cast<http_server *>(self)->answer_(asked));
        } catch (const std::exception &error) { // none may leave through the library
            return send(connection,
                        {.status = MHD_HTTP_INTERNAL_SERVER_ERROR, .body = fmt::format("{}\n", error.what())});
        }
    }

    // The library keeps a pointer to the client with its connection; elements of a list stay where they are.
    static void follow(void *self, MHD_Connection *connection, void **of_connection,
                       MHD_ConnectionNotificationCode code)
    {
        auto &clients = static_cast<http_server *>(self)->clients_;
        if (code == MHD_CONNECTION_NOTIFY_STARTED) {
            const auto *info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
            clients.push_back({info->connect_fd, clock::now()});
            *of_connection = &clients.back();
        } else {
            clients.remove_if([&](const client &one) { return &one == *of_connection; });
        }
    }

    // The time of the next request begins.
    static void complete(void *, MHD_Connection *connection, void **, MHD_RequestTerminationCode)
    {
        const auto *info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
        static_cast<client *>(info->socket_context)->since = clock::now();
    }
};

// The library's own time limit is not used: it begins anew with each octet, and a client that sends one now and then
// would keep its connection forever.
http_server::http_server(int listening, handler answer, std::chrono::milliseconds patience)
    : answer_(std::move(answer)), patience_(patience), daemon_(nullptr, MHD_stop_daemon)
{
    const int own = fcntl(listening, F_DUPFD_CLOEXEC, 0); // the library closes it
    if (own < 0)
        throw std::system_error(errno, std::generic_category(), "HTTP cannot be served");
    daemon_.reset(MHD_start_daemon(MHD_USE_EPOLL, 0, nullptr, nullptr, callbacks::answer, this,
                                   MHD_OPTION_LISTEN_SOCKET, own, MHD_OPTION_CONNECTION_LIMIT, most_clients,
                                   MHD_OPTION_CONNECTION_MEMORY_LIMIT, memory_of_a_client, MHD_OPTION_NOTIFY_CONNECTION,
                                   callbacks::follow, this, MHD_OPTION_NOTIFY_COMPLETED, callbacks::complete, nullptr,
                                   MHD_OPTION_END));
    if (!daemon_)
        throw std::runtime_error("HTTP cannot be served");
}

http_server::~http_server() = default;

int http_server::number() const
{
    return MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
}

// Until the library wants to be called, or until the first client has taken too long.
int http_server::milliseconds() const
{
    MHD_UNSIGNED_LONG_LONG wait = INT_MAX;
    MHD_get_timeout(daemon_.get(), &wait); // which leaves it when nothing is due
    if (clients_.empty())
        return static_cast<int>(wait);
    const auto oldest = std::ranges::min(clients_, {}, &client::since).since;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(oldest + patience_ - clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, static_cast<long long>(wait)));
}

void http_server::serve()
{
    MHD_run(daemon_.get());
    end_overdue();
}

// The library then finds the connection at its end.
void http_server::end_overdue()
{
    const auto oldest = clock::now() - patience_;
    for (const client &one : clients_)
        if (one.since <= oldest)
            shutdown(one.number, SHUT_RDWR);
}

} // namespace kel_exporter
