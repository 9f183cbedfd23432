// A client and what it says when a server is not as it should be.
#include "socket/client.h"

#include "socket/server.h"
#include "socket/socket_error.h"
#include "tests/refused_calls.h"
#include "tests/socket/folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <string>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace sockets
{
namespace
{

using namespace std::chrono_literals;

constexpr protocol spoken = {"test", 3};

// A server on a thread of its own, which answers with what it is asked.
class echo
{
public:
    explicit echo(const std::string &path, const server_limits &granted = {})
        : here_({.path = path}, spoken, {{"name", "node"}}, granted), thread_([this] { serve(); })
    {
    }
    ~echo()
    {
        eventfd_write(end_.number(), 1);
        thread_.join();
    }

private:
    void serve()
    {
        std::array<pollfd, 2> wanted = {{{here_.number(), POLLIN, 0}, {end_.number(), POLLIN, 0}}};
        while (poll(wanted.data(), wanted.size(), -1) < 0 || wanted[1].revents == 0)
            here_.serve([](std::string_view request) { return std::string(request); });
    }

    server here_;
    descriptor end_{eventfd(0, EFD_CLOEXEC)};
    std::thread thread_;
};

// A server that says one thing to its first client, whatever that asks, and then waits for the end, or disconnects.
class parrot
{
public:
    parrot(const std::string &path, std::string says, bool disconnects)
        : listening_(path, std::nullopt), says_(std::move(says)), disconnects_(disconnects),
          thread_([this] { serve(); })
    {
    }
    ~parrot()
    {
        eventfd_write(end_.number(), 1);
        thread_.join();
    }

private:
    void serve()
    {
        pollfd wanted = {.fd = listening_.number(), .events = POLLIN, .revents = 0};
        poll(&wanted, 1, 10'000);
        const descriptor peer(accept4(listening_.number(), nullptr, nullptr, SOCK_CLOEXEC));
        send(peer.number(), says_.data(), says_.size(), MSG_NOSIGNAL);
        eventfd_t value = 0;
        if (!disconnects_)
            eventfd_read(end_.number(), &value);
    }

    listening_socket listening_;
    std::string says_;
    bool disconnects_;
    descriptor end_{eventfd(0, EFD_CLOEXEC)};
    std::thread thread_;
};

// Why a client cannot connect there.
std::string refusal_at(const std::string &path, const protocol &wanted = spoken)
{
    try {
        const client connected(path, wanted, {.patience = 50ms});
    } catch (const socket_error &refused) {
        return refused.what();
    }
    return "";
}

std::string refusal_by(const std::string &first_line, bool disconnects = true)
{
    const folder where;
    const std::string path = where.file("a.sock");
    const parrot server(path, first_line, disconnects);
    const std::string refused = refusal_at(path);
    EXPECT_EQ(refused.substr(0, path.size() + 2), path + ": ") << refused;
    return refused.substr(path.size() + 2);
}

// Why it cannot connect there and get an answer.
std::string refusal_of_talk(const std::string &path, const std::string &request = "anything")
{
    try {
        client(path, spoken, {.patience = 50ms}).ask(request);
    } catch (const socket_error &refused) {
        return refused.what();
    }
    return "";
}

// Why it gets no answer from a server that greets and then says this.
std::string refusal_after_greeting(const std::string &said, bool disconnects, const client_limits &granted)
{
    const folder where;
    const std::string path = where.file("a.sock");
    const parrot server(path, greeting(spoken, notation::document::object()) + '\n' + said, disconnects);
    client connected(path, spoken, granted);
    try {
        connected.ask("anything");
    } catch (const socket_error &refused) {
        return std::string(refused.what()).substr(path.size() + 2);
    }
    return "";
}

TEST(Client, IsGreetedAndAnswered)
{
    const folder where;
    const echo node(where.file("a.sock"));
    client connected(where.file("a.sock"), spoken);
    EXPECT_EQ(connected.greeting().at("name").text(), "node");
    EXPECT_EQ(connected.ask("one"), "one");
    EXPECT_EQ(connected.ask(""), "");
}

TEST(Client, SendsAndReceivesMoreThanTheKernelHolds)
{
    const folder where;
    const echo node(where.file("a.sock"), {.longest_request = size_t{1} << 24});
    client connected(where.file("a.sock"), spoken);
    const std::string request((size_t{1} << 24) - 1, 'a');
    EXPECT_EQ(connected.ask(request), request);
}

TEST(Client, ReadsWhyItIsDisconnected)
{
    const folder where;
    const echo node(where.file("a.sock"), {.longest_request = 100});
    client connected(where.file("a.sock"), spoken);
    EXPECT_EQ(connected.ask(std::string(size_t{1} << 22, 'a')), R"({"error":"the request is longer than 100 octets"})");
    EXPECT_THROW(connected.ask("one"), socket_error);
}

TEST(Client, SaysThatThereAreTooMany)
{
    const folder where;
    const echo node(where.file("a.sock"), {.most_clients = 1});
    const client first(where.file("a.sock"), spoken);
    EXPECT_EQ(refusal_at(where.file("a.sock")), where.file("a.sock") + ": too many clients: the limit is 1");
}

TEST(Client, SaysThatThereIsNoServer)
{
    const folder where;
    EXPECT_EQ(refusal_at(where.file("a.sock")), where.file("a.sock") + ": no connection: No such file or directory");
    const descriptor dead(::socket(AF_UNIX, SOCK_STREAM, 0));
    const sockaddr_un address = address_of(where.file("a.sock"));
    ASSERT_EQ(bind(dead.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    EXPECT_EQ(refusal_at(where.file("a.sock")), where.file("a.sock") + ": no process serves this socket any more");
}

TEST(Client, RefusesAnotherProtocolOrVersion)
{
    EXPECT_EQ(refusal_by("{\"protocol\":\"other\",\"version\":3}\n"),
              R"(the server speaks the protocol "other", not "test")");
    EXPECT_EQ(refusal_by("{\"protocol\":\"test\",\"version\":4}\n"),
              R"(the server speaks version 4 of the protocol "test", not 3)");
    EXPECT_EQ(refusal_by("{\"protocol\":\"test\"}\n"),
              R"(the server speaks version nothing of the protocol "test", not 3)");
    EXPECT_EQ(refusal_by("{\"error\":5}\n"), R"(the server speaks the protocol nothing, not "test")");
    EXPECT_EQ(refusal_by("[]\n"), R"(the server speaks the protocol nothing, not "test")");
    EXPECT_EQ(refusal_by("220 mail\n"), "the server does not greet in JSON");
    EXPECT_EQ(refusal_by(""), "the server has disconnected");
}

TEST(Client, WaitsForAGreetingOnlySoLong)
{
    EXPECT_EQ(refusal_by("{\"protocol\":", false), "no answer came");
}

TEST(Client, WaitsForAnAnswerOnlySoLong)
{
    EXPECT_EQ(refusal_after_greeting("half", false, {.patience = 50ms}), "no answer came");
    EXPECT_EQ(refusal_after_greeting("half", true, {}), "the server has disconnected");
    EXPECT_EQ(refusal_after_greeting(std::string(101, 'a'), false, {.longest_answer = 100}),
              "the answer is longer than 100 octets");
}

TEST(Client, WaitsForAServerThatDoesNotReadOnlySoLong)
{
    const folder where;
    const parrot server(where.file("a.sock"), greeting(spoken, notation::document::object()) + '\n', false);
    EXPECT_EQ(refusal_of_talk(where.file("a.sock"), std::string(size_t{1} << 24, 'a')),
              where.file("a.sock") + ": the server does not read the request");
}

TEST(Client, WaitsForAServerThatAcceptsNobodyOnlySoLong)
{
    const folder where;
    const listening_socket full(where.file("a.sock"), std::nullopt);
    const sockaddr_un address = address_of(full.path());
    std::vector<descriptor> waiting;
    do
        waiting.emplace_back(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    while (connect(waiting.back().number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0);
    EXPECT_EQ(refusal_at(full.path()), full.path() + ": the server accepts no connection");
}

TEST(Client, SaysWhatTheSystemRefuses)
{
    const struct {
        refused_call call;
        std::string says;
    } rows[] = {
        {{SYS_socket, EMFILE}, "no socket can be made: Too many open files"},
        {{SYS_connect, EACCES}, "no connection: Permission denied"},
        {{SYS_sendto, ENOBUFS, 3, MSG_NOSIGNAL}, "the request cannot be sent: No buffer space available"},
        {{SYS_sendto, EPIPE, 3, MSG_NOSIGNAL}, "no answer came"},
        {{SYS_sendto, ECONNRESET, 3, MSG_NOSIGNAL}, "no answer came"},
        {{SYS_recvfrom, EIO}, "the answer cannot be read: Input/output error"},
        {{SYS_recvfrom, ECONNRESET}, "the server has disconnected"},
    };
    for (const auto &[call, says] : rows) {
        const folder where;
        const echo node(where.file("a.sock"));
        EXPECT_EQ(where_refused({call}, [&] { return refusal_of_talk(where.file("a.sock")); }),
                  where.file("a.sock") + ": " + says);
    }
}

TEST(Client, WaitsAsItsCallerDoes)
{
    const folder where;
    const parrot server(where.file("a.sock"), greeting(spoken, notation::document::object()) + '\n', false);
    client connected(where.file("a.sock"), spoken, {.patience = 1h});
    int waits = 0;
    EXPECT_THROW(connected.ask("one", [&](int) { return ++waits < 3; }), socket_error);
    EXPECT_EQ(waits, 3);
}

} // namespace
} // namespace sockets
