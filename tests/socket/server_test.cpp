// Everything a server grants, with clients that go beyond it. Server and clients are on one thread: a test says when the
// server has its turn.
#include "socket/server.h"

#include "notation/json.h"
#include "socket/socket_error.h"
#include "tests/refused_calls.h"
#include "tests/socket/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <grp.h>
#include <memory>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace sockets
{
namespace
{

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr protocol spoken = {"test", 3};
constexpr auto forever = 1h;
constexpr std::string_view hello = R"({"protocol":"test","version":3})";

class served
{
public:
    explicit served(const server_limits &granted = {.patience = forever}, std::optional<gid_t> group = std::nullopt)
        : here({.path = where.file("a.sock"), .group = group}, spoken, notation::document::object(), granted)
    {
    }

    // Serves what there is now, or comes soon.
    void turn()
    {
        pollfd wanted = {.fd = here.number(), .events = POLLIN, .revents = 0};
        poll(&wanted, 1, 10'000);
        here.serve(answer);
    }

    // Nothing is to be done.
    bool rests() const
    {
        pollfd wanted = {.fd = here.number(), .events = POLLIN, .revents = 0};
        return poll(&wanted, 1, 0) == 0;
    }

    folder where;
    std::vector<std::string> asked;
    server::handler answer = [this](std::string_view request) {
        asked.emplace_back(request);
        return "you said " + std::string(request);
    };
    server here;
};

class raw_client
{
public:
    explicit raw_client(served &at) : at_(at), socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        const sockaddr_un address = address_of(at.here.path());
        EXPECT_EQ(connect(number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    }

    int number() const
    {
        return socket_.number();
    }

    // How much of it the kernel took.
    size_t send(std::string_view text) const
    {
        const ssize_t octets = ::send(number(), text.data(), text.size(), MSG_NOSIGNAL);
        return octets < 0 ? 0 : static_cast<size_t>(octets);
    }

    // The next line, or "disconnected".
    std::string line()
    {
        std::array<char, 4096> piece;
        while (!received_.has_line()) {
            const ssize_t octets = recv(number(), piece.data(), piece.size(), 0);
            if (octets > 0)
                received_.append({piece.data(), static_cast<size_t>(octets)});
            else if (octets < 0 && errno == EAGAIN)
                at_.turn();
            else
                return "disconnected";
        }
        return *received_.take_line();
    }

    void shut_down_sending() const
    {
        shutdown(number(), SHUT_WR);
    }

private:
    served &at_;
    descriptor socket_;
    line_buffer received_{size_t{1} << 30};
};

TEST(Server, GreetsAndAnswers)
{
    served node;
    raw_client client(node);
    EXPECT_EQ(client.line(), hello);
    client.send("one\n");
    EXPECT_EQ(client.line(), "you said one");
    client.send("two\n");
    EXPECT_EQ(client.line(), "you said two");
}

TEST(Server, TellsWhoItIs)
{
    const folder where;
    server here({.path = where.file("a.sock")}, spoken, {{"name", "node"}, {"pid", 17}});
    const descriptor client(::socket(AF_UNIX, SOCK_STREAM, 0));
    const sockaddr_un address = address_of(here.path());
    ASSERT_EQ(connect(client.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    here.serve([](std::string_view) { return ""; });
    std::array<char, 100> piece;
    const ssize_t octets = recv(client.number(), piece.data(), piece.size(), 0);
    EXPECT_EQ(std::string(piece.data(), static_cast<size_t>(octets)),
              "{\"protocol\":\"test\",\"version\":3,\"name\":\"node\",\"pid\":17}\n");
}

TEST(Server, AnswersWhatComesAtOnceInItsOrder)
{
    served node;
    raw_client client(node);
    client.send("one\ntwo\n\nthr");
    EXPECT_EQ(client.line(), hello);
    EXPECT_EQ(client.line(), "you said one");
    EXPECT_EQ(client.line(), "you said two");
    EXPECT_EQ(client.line(), "you said ");
    client.send("ee\n");
    EXPECT_EQ(client.line(), "you said three");
}

TEST(Server, AnswersWhoSendsNothingMore)
{
    served node;
    raw_client client(node);
    client.send("one\ntwo\nhalf");
    client.shut_down_sending();
    EXPECT_EQ(client.line(), hello);
    EXPECT_EQ(client.line(), "you said one");
    EXPECT_EQ(client.line(), "you said two");
    EXPECT_EQ(client.line(), "disconnected");
    EXPECT_EQ(node.here.clients(), 0U);
}

TEST(Server, TakesARequestOfEachClientInTurn)
{
    served node;
    raw_client first(node);
    raw_client second(node);
    first.send("a\nb\nc\n");
    second.send("x\ny\n");
    for (int turns = 0; turns < 10; ++turns)
        node.here.serve(node.answer);
    EXPECT_THAT(node.asked, ElementsAre("a", "x", "b", "y", "c"));
}

TEST(Server, AnswersWhatItsOwnerThrowsAsAnError)
{
    served node;
    node.answer = [](std::string_view request) { return notation::to_json(notation::read_json(request)); };
    raw_client client(node);
    client.send(std::string("\0\xff garbage\n", 11));
    EXPECT_EQ(client.line(), hello);
    EXPECT_EQ(client.line(), R"({"error":"not JSON"})");
    client.send("{}\n");
    EXPECT_EQ(client.line(), "{}");
}

TEST(Server, RestsWhileNobodyAsks)
{
    served node;
    EXPECT_TRUE(node.rests());
    raw_client client(node);
    EXPECT_EQ(client.line(), hello);
    client.send("one\n");
    EXPECT_EQ(client.line(), "you said one");
    node.here.serve(node.answer);
    EXPECT_TRUE(node.rests());
    client.send("half");
    node.turn();
    EXPECT_TRUE(node.rests());
    client.send("\n");
    EXPECT_EQ(client.line(), "you said half");
}

TEST(Server, ServesOthersWhileARequestIsNotComplete)
{
    served node;
    raw_client slow(node);
    slow.send("ha");
    for (int i = 0; i < 3; ++i) {
        raw_client client(node);
        client.send("one\n");
        EXPECT_EQ(client.line(), hello);
        EXPECT_EQ(client.line(), "you said one");
    }
    slow.send("lf\n");
    EXPECT_EQ(slow.line(), hello);
    EXPECT_EQ(slow.line(), "you said half");
}

TEST(Server, DisconnectsWhoDoesNotCompleteARequest)
{
    served node({.patience = 50ms});
    raw_client idle(node);
    raw_client slow(node);
    EXPECT_EQ(idle.line(), hello);
    EXPECT_EQ(slow.line(), hello);
    slow.send("ha");
    EXPECT_EQ(slow.line(), R"({"error":"the request was not complete after 50 ms"})");
    EXPECT_EQ(slow.line(), "disconnected");
    idle.send("one\n");
    EXPECT_EQ(idle.line(), "you said one");
}

TEST(Server, DisconnectsWhoSendsARequestOctetByOctet)
{
    served node({.patience = 50ms});
    raw_client slow(node);
    while (slow.send("a") == 1) {
        node.here.serve(node.answer);
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(node.here.clients(), 0U);
    EXPECT_THAT(node.asked, ElementsAre());
}

TEST(Server, DoesNotCountTheTimeOfARequestAgainstOthers)
{
    served node({.patience = 500ms});
    raw_client long_one(node);
    raw_client slow(node);
    node.answer = [](std::string_view request) {
        if (request == "long")
            std::this_thread::sleep_for(700ms);
        return std::string(request);
    };
    slow.send("ha");
    node.turn();
    long_one.send("long\n");
    node.turn();
    slow.send("lf\n");
    EXPECT_EQ(slow.line(), hello);
    EXPECT_EQ(slow.line(), "half");
}

TEST(Server, GoesOnWhenAClientIsGone)
{
    served node;
    {
        const raw_client half(node);
        const raw_client whole(node);
        half.send("ha");
        whole.send("one\ntwo\n");
        node.here.serve(node.answer);
    }
    raw_client client(node);
    client.send("three\n");
    EXPECT_EQ(client.line(), hello);
    EXPECT_EQ(client.line(), "you said three");
    node.here.serve(node.answer);
    EXPECT_EQ(node.here.clients(), 1U);
}

TEST(Server, ServesOthersWhileAnAnswerIsNotRead)
{
    served node;
    node.answer = [](std::string_view request) { return request == "all" ? std::string(1 << 22, 'a') : "short"; };
    raw_client greedy(node);
    greedy.send("all\n");
    raw_client client(node);
    client.send("one\n");
    EXPECT_EQ(client.line(), hello);
    EXPECT_EQ(client.line(), "short");
    EXPECT_TRUE(node.rests());
    EXPECT_EQ(greedy.line(), hello);
    EXPECT_EQ(greedy.line().size(), size_t{1} << 22);
}

TEST(Server, DisconnectsWhoDoesNotReadAnAnswer)
{
    served node({.patience = 50ms});
    node.answer = [](std::string_view) { return std::string(1 << 22, 'a'); };
    const raw_client greedy(node);
    greedy.send("all\n");
    node.turn();
    EXPECT_EQ(node.here.clients(), 1U);
    while (node.here.clients() != 0)
        node.turn();
}

TEST(Server, CarriesOutNothingMoreForWhoDoesNotRead)
{
    served node;
    const raw_client greedy(node);
    const std::string many(65'536, '\n');
    size_t taken = 0;
    do {
        taken = greedy.send(many);
        for (int turns = 0; turns < 70'000 && !node.rests(); ++turns)
            node.here.serve(node.answer);
    } while (taken != 0);
    const size_t asked = node.asked.size();
    node.here.serve(node.answer);
    EXPECT_EQ(node.asked.size(), asked);
    EXPECT_EQ(node.here.clients(), 1U);
}

TEST(Server, DisconnectsWhoseRequestIsTooLong)
{
    served node({.longest_request = 100'000, .patience = forever});
    raw_client client(node);
    EXPECT_EQ(client.line(), hello);
    client.send(std::string(100'000, 'a') + '\n');
    EXPECT_EQ(client.line().size(), 100'009U);
    client.send(std::string(100'001, 'a') + "\n");
    EXPECT_EQ(client.line(), R"({"error":"the request is longer than 100000 octets"})");
    EXPECT_EQ(client.line(), "disconnected");
}

TEST(Server, SaysWhenAnAnswerIsTooLong)
{
    served node({.longest_answer = 12, .patience = forever});
    raw_client client(node);
    client.send("123\n1234\n5\n");
    EXPECT_EQ(client.line(), hello);
    EXPECT_EQ(client.line(), "you said 123");
    EXPECT_EQ(client.line(), R"({"error":"the answer has 13 octets, and may have 12"})");
    EXPECT_EQ(client.line(), "you said 5");
}

TEST(Server, RefusesAClientTooMany)
{
    served node({.most_clients = 2, .patience = forever});
    raw_client first(node);
    std::optional<raw_client> second(std::in_place, node);
    raw_client third(node);
    EXPECT_EQ(third.line(), R"({"error":"too many clients: the limit is 2"})");
    EXPECT_EQ(third.line(), "disconnected");
    EXPECT_EQ(first.line(), hello);
    second.reset();
    node.turn();
    raw_client fourth(node);
    EXPECT_EQ(fourth.line(), hello);
}

TEST(Server, WaitsForAFreeDescriptor)
{
    served node;
    raw_client client(node);
    rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const int next_free = dup(client.number());
    close(next_free);
    const rlimit none_free = {static_cast<rlim_t>(next_free), before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none_free);
    node.here.serve(node.answer);
    EXPECT_TRUE(node.rests());
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(client.line(), hello);
    EXPECT_TRUE(node.rests());
    raw_client another(node);
    EXPECT_EQ(another.line(), hello);
}

TEST(Server, RestsOnlyWhenItIsKnownToBeWokenLater)
{
    const struct {
        std::vector<refused_call> calls;
        std::string rests;
    } rows[] = {
        {{{SYS_accept4, EMFILE}}, "yes"},
        {{{SYS_accept4, EMFILE}, {SYS_epoll_ctl, ENOSPC, 1, EPOLL_CTL_MOD}}, "no"},
        {{{SYS_accept4, ECONNABORTED}}, "no"}, // by a client that is gone: there may be others
    };
    for (const auto &[calls, rests] : rows) {
        served node;
        const raw_client client(node);
        const auto serve_and_look = [&] {
            node.here.serve(node.answer);
            return node.rests() ? "yes" : "no";
        };
        EXPECT_EQ(where_refused(calls, serve_and_look), rests) << calls[0].error;
    }
}

TEST(Server, SaysWhatTheSystemRefuses)
{
    for (const long call : {SYS_epoll_create1, SYS_timerfd_create, SYS_epoll_ctl}) {
        const folder where;
        const std::string path = where.file("a.sock");
        const std::string said = where_refused({{call, EMFILE}}, [&]() -> std::string {
            try {
                const server here({.path = path}, spoken);
            } catch (const socket_error &refused) {
                return refused.what();
            }
            return "";
        });
        EXPECT_EQ(said, path + ": it cannot be served: Too many open files");
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}

TEST(Server, RefusesWhoCannotBeWatchedOrKnown)
{
    const struct {
        refused_call call;
        std::string says;
    } rows[] = {
        {{SYS_epoll_ctl, ENOSPC, 1, EPOLL_CTL_ADD}, "No space left on device"},
        {{SYS_getsockopt, ENOBUFS, 2, SO_PEERCRED}, "this socket is for its owner only"},
    };
    for (const auto &[call, says] : rows) {
        served node;
        raw_client client(node);
        EXPECT_EQ(where_refused({call}, [&] { return client.line(); }), "{\"error\":\"" + says + "\"}");
    }
}

TEST(Server, DisconnectsItsClientsAtItsEnd)
{
    auto node = std::make_unique<served>();
    raw_client client(*node);
    EXPECT_EQ(client.line(), hello);
    node.reset();
    std::array<char, 10> piece;
    EXPECT_EQ(recv(client.number(), piece.data(), piece.size(), 0), 0);
}

TEST(Server, ClosesWhatAChildHasOfIt)
{
    auto node = std::make_unique<served>();
    raw_client client(*node);
    EXPECT_EQ(client.line(), hello);
    std::array<int, 2> hold{};
    ASSERT_EQ(pipe(hold.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        node->here.leave_to_parent();
        close(client.number());
        close(hold[1]);
        char octet = 0;
        _exit(read(hold[0], &octet, 1) == 0 ? 0 : 1); // until the parent is through
    }
    EXPECT_TRUE(std::filesystem::exists(node->here.path()));
    node.reset();
    std::array<char, 10> piece;
    pollfd end = {.fd = client.number(), .events = POLLIN, .revents = 0};
    poll(&end, 1, 10'000);
    EXPECT_EQ(recv(client.number(), piece.data(), piece.size(), 0), 0);
    close(hold[0]);
    close(hold[1]);
    waitpid(child, nullptr, 0);
}

constexpr uid_t nobody = 65534; // and its group

// The first line that a process of another user gets, which could open the socket file.
std::string first_line_of_stranger(served &node, const std::vector<gid_t> &groups)
{
    chmod(node.where.path().c_str(), 0755);
    chmod(node.here.path().c_str(), 0666);
    std::array<int, 2> result{};
    EXPECT_EQ(pipe(result.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (setgroups(groups.size(), groups.data()) != 0 || setresgid(nobody, nobody, nobody) != 0 ||
            setresuid(nobody, nobody, nobody) != 0)
            _exit(1);
        const raw_client stranger(node);
        std::array<char, 200> piece;
        pollfd wanted = {.fd = stranger.number(), .events = POLLIN, .revents = 0};
        poll(&wanted, 1, 10'000);
        const ssize_t octets = recv(stranger.number(), piece.data(), piece.size(), 0);
        _exit(octets > 0 && write(result[1], piece.data(), static_cast<size_t>(octets)) == octets ? 0 : 1);
    }
    close(result[1]);
    node.turn();
    std::array<char, 200> piece;
    const ssize_t octets = read(result[0], piece.data(), piece.size());
    close(result[0]);
    waitpid(child, nullptr, 0);
    return {piece.data(), octets > 0 ? static_cast<size_t>(octets) : 0};
}

constexpr gid_t group_of_test = 4711;

TEST(Server, RefusesAnotherUser)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    served node;
    EXPECT_EQ(first_line_of_stranger(node, {group_of_test}), "{\"error\":\"this socket is for its owner only\"}\n");
}

TEST(Server, RefusesAnotherUserOfAnotherGroup)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    served node({.patience = forever}, group_of_test);
    EXPECT_EQ(first_line_of_stranger(node, {group_of_test + 1}),
              "{\"error\":\"this socket is for its owner and its group only\"}\n");
}

TEST(Server, RefusesWhoseGroupsTheSystemDoesNotSay)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    served node({.patience = forever}, group_of_test);
    EXPECT_EQ(where_refused({{SYS_getsockopt, ENOPROTOOPT, 2, SO_PEERGROUPS}},
                            [&] { return first_line_of_stranger(node, {group_of_test}); }),
              "{\"error\":\"this socket is for its owner and its group only\"}\n");
}

TEST(Server, AcceptsAnotherUserOfItsGroup)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    served node({.patience = forever}, group_of_test);
    EXPECT_EQ(first_line_of_stranger(node, {1, group_of_test}), std::string(hello) + '\n');
    served other({.patience = forever}, nobody);
    EXPECT_EQ(first_line_of_stranger(other, {}), std::string(hello) + '\n');
}

TEST(Server, AcceptsRoot)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can become another user";
    served node;
    raw_client root(node);
    ASSERT_EQ(seteuid(nobody), 0);
    EXPECT_EQ(root.line(), hello);
    ASSERT_EQ(seteuid(0), 0);
}

} // namespace
} // namespace sockets
