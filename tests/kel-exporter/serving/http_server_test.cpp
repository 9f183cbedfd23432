// Clients of every kind, over sockets of this process.
#include "kel-exporter/serving/http_server.h"

#include "kel-exporter/serving/listener.h"
#include "socket/descriptor.h"
#include "tests/refused_calls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <stop_token>
#include <sys/socket.h>
#include <thread>
#include <vector>

namespace kel_exporter
{
namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr size_t large = size_t{8} << 20; // more than the buffers of a connection hold

class client
{
public:
    explicit client(const listener &server) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        socklen_t size = sizeof address;
        getsockname(server.number(), reinterpret_cast<sockaddr *>(&address), &size);
        EXPECT_EQ(connect(socket_.number(), reinterpret_cast<sockaddr *>(&address), size), 0);
        const timeval longest = {.tv_sec = 20};
        setsockopt(socket_.number(), SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
    }

    void say(const std::string &text) const
    {
        send(socket_.number(), text.data(), text.size(), MSG_NOSIGNAL);
    }

    // What comes until the text ends with this, or until the server disconnects.
    std::string hear(const std::string &end = "no end") const
    {
        std::string heard;
        std::array<char, 65'536> piece;
        while (!heard.ends_with(end)) {
            const ssize_t octets = recv(socket_.number(), piece.data(), piece.size(), 0);
            EXPECT_TRUE(octets >= 0 || errno == ECONNRESET) << "the server does not disconnect";
            if (octets <= 0)
                break;
            heard.append(piece.data(), static_cast<size_t>(octets));
        }
        return heard;
    }

private:
    sockets::descriptor socket_;
};

class HttpServer : public testing::Test
{
protected:
    void start(std::chrono::milliseconds patience = std::chrono::seconds(60))
    {
        server_.emplace(
            listening.number(),
            [](const http_request &asked) -> http_answer {
                if (asked.path == "/broken")
                    throw std::runtime_error("no more room");
                if (asked.path == "/large")
                    return {.body = std::string(large, 'x')};
                return {.status = asked.path == "/none" ? 404u : 200u,
                        .body = std::string(asked.path) + " " + std::string(asked.accept) + "."};
            },
            patience);
        thread_ = std::jthread([this](const std::stop_token &over) {
            pollfd waited = {server_->number(), POLLIN, 0};
            while (!over.stop_requested()) {
                poll(&waited, 1, std::min(server_->milliseconds(), 20));
                server_->serve();
            }
        });
    }

    std::string answer_to(const std::string &request)
    {
        const client one(listening);
        one.say(request);
        return one.hear();
    }

    const listener listening{"127.0.0.1:0"};

private:
    std::optional<http_server> server_;
    std::jthread thread_;
};

const std::string ask = "GET /a HTTP/1.1\r\nHost: x\r\nAccept: y\r\n\r\n";
const std::string ask_last = "GET /a HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n";

TEST_F(HttpServer, SaysWhyThereIsNoAnswer)
{
    start();
    const std::string answer = answer_to("GET /broken HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 500 "));
    EXPECT_THAT(answer, EndsWith("\r\n\r\nno more room\n"));
}

TEST_F(HttpServer, SaysWhatTheSystemRefuses)
{
    for (const auto &[call, why] : {std::pair(SYS_fcntl, "HTTP cannot be served: Too many open files"),
                                    std::pair(SYS_epoll_create1, "HTTP cannot be served")})
        EXPECT_EQ(where_refused({{call, EMFILE}},
                                [this]() -> std::string {
                                    try {
                                        http_server(listening.number(), nullptr);
                                    } catch (const std::runtime_error &refused) {
                                        return refused.what();
                                    }
                                    return "";
                                }),
                  why);
}

TEST_F(HttpServer, AnswersWithTypeAndPolicy)
{
    start();
    const std::string answer = answer_to(ask_last);
    EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 OK\r\n"));
    for (const char *header :
         {"Content-Type: text/plain; charset=utf-8\r\n", "Content-Security-Policy: default-src 'none'\r\n",
          "Cache-Control: no-store\r\n", "X-Content-Type-Options: nosniff\r\n", "Vary: Accept\r\n"})
        EXPECT_THAT(answer, HasSubstr(header));
    EXPECT_THAT(answer, testing::EndsWith("\r\n\r\n/a ."));
}

TEST_F(HttpServer, AnswersOneRequestAfterTheOther)
{
    start();
    const client one(listening);
    one.say(ask);
    EXPECT_THAT(one.hear("."), HasSubstr("/a y."));
    one.say(ask + ask_last); // before an answer came
    EXPECT_THAT(one.hear(), HasSubstr("/a y.HTTP/1.1 200"));
}

TEST_F(HttpServer, SendsNoBodyToHead)
{
    start();
    const std::string answer = answer_to("HEAD /a HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(answer, HasSubstr("Content-Length: 4\r\n"));
    EXPECT_THAT(answer, testing::EndsWith("\r\n\r\n"));
}

TEST_F(HttpServer, PassesTheStatusOn)
{
    start();
    EXPECT_THAT(answer_to("GET /none HTTP/1.0\r\n\r\n"), StartsWith("HTTP/1.1 404"));
}

TEST_F(HttpServer, RefusesOtherMethodsAndBodies)
{
    start();
    for (const std::string method : {"POST", "PUT", "DELETE", "OPTIONS", "TRACE", "BREW"}) {
        const std::string answer =
            answer_to(method + " /a HTTP/1.1\r\nHost: x\r\nContent-Length: 1000000000\r\n\r\nbegin");
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 405")) << method;
        EXPECT_THAT(answer, HasSubstr("Allow: GET, HEAD\r\n"));
    }
    EXPECT_THAT(answer_to("GET /a HTTP/1.1\r\nHost: x\r\nContent-Length: 5\r\n\r\nbegin"), Not(HasSubstr("200 OK")));
}

TEST_F(HttpServer, RefusesWhatIsTooLongOrNoHttp)
{
    start();
    EXPECT_THAT(answer_to("GET /" + std::string(100'000, 'a') + " HTTP/1.1\r\nHost: x\r\n\r\n"),
                StartsWith("HTTP/1.1 414"));
    EXPECT_THAT(answer_to("GET / HTTP/1.1\r\nHost: x\r\nLong: " + std::string(100'000, 'a') + "\r\n\r\n"),
                StartsWith("HTTP/1.1 431"));
    EXPECT_THAT(answer_to("hello\r\n\r\n"), Not(HasSubstr("200 OK")));
    EXPECT_THAT(answer_to(ask_last), HasSubstr("200 OK"));
}

// Each octet that it sends now and then would keep it there for ever if only its silence counted.
TEST_F(HttpServer, DisconnectsAClientThatTakesTooLongForARequest)
{
    start(std::chrono::milliseconds(50));
    const client slow(listening);
    slow.say("GET /a HT");
    const std::jthread dripping([&slow](const std::stop_token &over) {
        while (!over.stop_requested()) {
            slow.say("T");
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    EXPECT_THAT(slow.hear(), Not(HasSubstr("200 OK")));
    EXPECT_THAT(answer_to(ask_last), HasSubstr("200 OK"));
}

TEST_F(HttpServer, DisconnectsAClientThatDoesNotTakeItsAnswer)
{
    start(std::chrono::milliseconds(50));
    const client lazy(listening);
    lazy.say("GET /large HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_THAT(answer_to(ask_last), HasSubstr("200 OK"));
    client late(listening); // waits for its own end, which is after that of the other one
    EXPECT_EQ(late.hear(), "");
    EXPECT_LT(lazy.hear().size(), large);
}

TEST_F(HttpServer, OutlivesAClientThatGoesAwayWithinItsAnswer)
{
    start();
    for (int i = 0; i < 5; ++i)
        client(listening).say("GET /large HTTP/1.1\r\nHost: x\r\n\r\n");
    EXPECT_THAT(answer_to(ask_last), HasSubstr("200 OK"));
}

// They wait for their turn, which comes when those before them have taken too long.
TEST_F(HttpServer, ServesOthersAfterManySilentClients)
{
    start(std::chrono::milliseconds(200));
    std::vector<client> silent;
    for (int i = 0; i < 150; ++i)
        silent.emplace_back(listening);
    EXPECT_THAT(answer_to(ask_last), HasSubstr("200 OK"));
}

} // namespace
} // namespace kel_exporter
