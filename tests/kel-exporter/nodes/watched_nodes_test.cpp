// Nodes that answer, wait, hang and end, in threads of this process.
#include "kel-exporter/nodes/watched_nodes.h"

#include "kelctl/remote/node_names.h"
#include "made_up_node.h"
#include "socket/listening_socket.h"
#include "socket/server.h"
#include "temporary_folder.h"
#include "tests/refused_calls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <poll.h>
#include <stop_token>
#include <sys/socket.h>
#include <system_error>
#include <thread>

namespace kel_exporter
{
namespace
{

using testing::HasSubstr;

constexpr std::chrono::seconds longest(20);

// $XDG_RUNTIME_DIR is a folder of this process; root looks there as well.
struct runtime_folder : temporary_folder {
    runtime_folder()
    {
        setenv("XDG_RUNTIME_DIR", path().c_str(), 1);
    }

    std::string socket(const std::string &name) const
    {
        return path() + "/kelctl/" + name + ".sock";
    }
};

// Answers with the made-up state, unless it is busy.
class standing_in
{
public:
    standing_in(const runtime_folder &folder, const std::string &name, bool busy = false) : busy_(busy)
    {
        server_.emplace(sockets::address{folder.socket(name)}, kelctl::node_protocol,
                        notation::document{{"name", name}, {"file", name + ".toml"}, {"process", 1}});
        thread_ = std::jthread([this](const std::stop_token &over) {
            pollfd waited = {server_->number(), POLLIN, 0};
            while (!over.stop_requested()) {
                poll(&waited, 1, 10);
                server_->serve([&](std::string_view) { return answer(over); });
            }
        });
    }

    void become_busy()
    {
        const std::lock_guard lock(mutex_);
        busy_ = true;
    }

    size_t asked() const
    {
        return asked_;
    }

    // It has taken a request that it does not answer.
    void wait_until_asked(size_t times)
    {
        while (asked_ < times)
            std::this_thread::yield();
    }

private:
    std::string answer(const std::stop_token &over)
    {
        ++asked_;
        std::unique_lock lock(mutex_);
        free_.wait(lock, over, [this] { return !busy_; });
        return notation::to_json({{"result", {{"shown", *made_up_node("").state}}}});
    }

    std::mutex mutex_;
    std::condition_variable_any free_;
    bool busy_;
    std::atomic<size_t> asked_ = 0;
    std::optional<sockets::server> server_;
    std::jthread thread_;
};

class WatchedNodes : public testing::Test
{
protected:
    // As soon as it holds; fails when it does not.
    static known_node seen(watched_nodes &nodes, const std::function<bool(const known_node &)> &holds)
    {
        const auto end = watch_clock::now() + longest;
        for (;;) {
            const known_node found = nodes.known().at(0);
            if (holds(found))
                return found;
            if (watch_clock::now() > end) {
                ADD_FAILURE() << found.why;
                return found;
            }
            std::this_thread::yield();
        }
    }

    const pace quick = {
        .shortest = std::chrono::milliseconds(1), .longest = std::chrono::milliseconds(1), .first = longest};
    const runtime_folder folder;
};

TEST_F(WatchedNodes, AreKnownAtTheFirstQuestion)
{
    const standing_in node(folder, "edge");
    watched_nodes nodes({"edge"}, quick);
    const std::vector<known_node> known = nodes.known();
    ASSERT_EQ(known.size(), 1u);
    EXPECT_TRUE(known[0].up);
    EXPECT_EQ(known[0].file, "edge.toml");
    EXPECT_EQ(*known[0].state, *made_up_node("").state);
}

TEST_F(WatchedNodes, ThatAreNotThereAreNotUp)
{
    watched_nodes nodes({"edge"}, quick);
    const known_node none = nodes.known().at(0);
    EXPECT_FALSE(none.up);
    EXPECT_EQ(none.why, "there is no such node");
    EXPECT_EQ(none.state, nullptr);
}

TEST_F(WatchedNodes, ThatEndedWithoutTidyingUpAreNotUp)
{
    std::filesystem::create_directories(std::filesystem::path(folder.socket("edge")).parent_path());
    const sockets::descriptor dead(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = sockets::address_of(folder.socket("edge"));
    ASSERT_EQ(bind(dead.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    watched_nodes nodes({"edge"}, quick);
    const known_node none = nodes.known().at(0);
    EXPECT_FALSE(none.up);
    EXPECT_EQ(none.why, folder.socket("edge") + ": no process serves this socket any more");
}

TEST_F(WatchedNodes, AreAtMost64)
{
    std::vector<std::string> names;
    for (int number = 0; number < 70; ++number)
        names.push_back("node-" + std::to_string(number));
    watched_nodes nodes(names, quick);
    EXPECT_EQ(nodes.known().size(), 64u);
    EXPECT_EQ(nodes.known().size(), 64u);
}

TEST_F(WatchedNodes, WithoutAThreadAreFoundAgain)
{
    EXPECT_EQ(where_refused({{SYS_clone3, EAGAIN}, {SYS_clone, EAGAIN}},
                            [this] {
                                watched_nodes nodes({"edge"}, quick);
                                std::string why;
                                for (int question = 0; question < 2; ++question)
                                    try {
                                        nodes.known();
                                    } catch (const std::system_error &refused) {
                                        why += refused.what() + std::string(". ");
                                    }
                                return why;
                            }),
              "Resource temporarily unavailable. Resource temporarily unavailable. ");
}

TEST_F(WatchedNodes, ThatNobodyAsksForAreLeftAlone)
{
    const standing_in node(folder, "edge");
    pace idle = quick;
    idle.until = std::chrono::milliseconds(200);
    watched_nodes nodes({"edge"}, idle);
    seen(nodes, [](const known_node &one) { return one.up; });
    size_t looks = 0;
    do {
        looks = node.asked();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    } while (node.asked() != looks); // the end of the test's time, if it is never left alone
    seen(nodes, [&](const known_node &) { return node.asked() > looks; });
}

TEST_F(WatchedNodes, AreLookedUpEachTimeWithoutNames)
{
    watched_nodes nodes({}, quick);
    const auto has = [&](const std::string &name) {
        for (const known_node &one : nodes.known())
            if (one.name == name)
                return true;
        return false;
    };
    EXPECT_FALSE(has("edge"));
    {
        const standing_in node(folder, "edge");
        EXPECT_TRUE(has("edge"));
    }
    EXPECT_TRUE(has("edge")); // whoever knew it learns that it is not up
}

TEST_F(WatchedNodes, ThatAreGoneAreForgottenInTime)
{
    pace forgetful = quick;
    forgetful.remembered = std::chrono::milliseconds(0);
    watched_nodes nodes({}, forgetful);
    {
        const standing_in node(folder, "edge");
        nodes.known();
    }
    std::this_thread::sleep_for(std::chrono::nanoseconds(1));
    for (const known_node &one : nodes.known())
        EXPECT_NE(one.name, "edge");
}

TEST_F(WatchedNodes, ThatEndKeepWhatWasKnownOfThem)
{
    watched_nodes nodes({"edge"}, quick);
    {
        const standing_in node(folder, "edge");
        ASSERT_TRUE(nodes.known().at(0).up);
    }
    const known_node gone = seen(nodes, [](const known_node &one) { return !one.up; });
    EXPECT_NE(gone.state, nullptr);
    EXPECT_NE(gone.why, "");
    const standing_in again(folder, "edge");
    seen(nodes, [](const known_node &one) { return one.up; });
}

// Nobody waits for it, and no other node is shown later.
TEST_F(WatchedNodes, ThatAreBusyStayUpWithTheValuesThatTheyHad)
{
    standing_in busy(folder, "busy");
    const standing_in other(folder, "other");
    watched_nodes nodes({"busy", "other"}, quick);
    ASSERT_TRUE(nodes.known().at(0).up);
    busy.become_busy();
    busy.wait_until_asked(busy.asked() + 1);
    const known_node before = nodes.known().at(0);
    const auto at_first = nodes.known().at(1).read;
    while (nodes.known().at(1).read == at_first) // the other one goes on
        std::this_thread::yield();
    const known_node now = nodes.known().at(0);
    EXPECT_TRUE(now.up);
    EXPECT_EQ(now.read, before.read);
}

TEST_F(WatchedNodes, ThatDoNotAnswerTheFirstQuestionAreNotWaitedForLong)
{
    const standing_in node(folder, "edge", true);
    pace impatient = quick;
    impatient.first = std::chrono::milliseconds(1);
    watched_nodes nodes({"edge"}, impatient);
    const known_node unknown = nodes.known().at(0);
    EXPECT_FALSE(unknown.up);
    EXPECT_EQ(unknown.why, "it has not answered yet");
}

// Ends as soon as the answer is not wanted any more, at the end of this test.
TEST_F(WatchedNodes, ThatHangWithinAnAnswerAreNotWaitedFor)
{
    std::filesystem::create_directories(std::filesystem::path(folder.socket("x")).parent_path());
    const sockets::listening_socket listening(folder.socket("edge"), std::nullopt);
    pace impatient = quick;
    impatient.first = std::chrono::milliseconds(1);
    watched_nodes nodes({"edge"}, impatient);
    nodes.known();
    pollfd waited = {listening.number(), POLLIN, 0};
    ASSERT_EQ(poll(&waited, 1, 20'000), 1);
    const sockets::descriptor peer(accept(listening.number(), nullptr, nullptr));
    const std::string said =
        sockets::greeting(kelctl::node_protocol, {{"file", "x"}}) + "\n{\"result\":{\"shown\":{\"queu";
    ASSERT_EQ(send(peer.number(), said.data(), said.size(), 0), static_cast<ssize_t>(said.size()));
    std::array<char, 100> request;
    ASSERT_GT(recv(peer.number(), request.data(), request.size(), 0), 0);
    EXPECT_FALSE(nodes.known().at(0).up);
}

TEST_F(WatchedNodes, ThatRefuseTheQuestionAreNotUp)
{
    const std::string path = folder.socket("older");
    sockets::server older({path}, kelctl::node_protocol, {{"file", "x"}});
    const std::jthread serving([&](const std::stop_token &over) {
        while (!over.stop_requested())
            older.serve(
                [](std::string_view) -> std::string { throw std::runtime_error("there is no question \"state\""); });
    });
    watched_nodes nodes({"older"}, quick);
    EXPECT_EQ(nodes.known().at(0).why, "there is no question \"state\"");
}

// However often they are wanted.
TEST_F(WatchedNodes, AreNotAskedMoreOftenThanTheirPaceAllows)
{
    standing_in node(folder, "edge");
    const pace kept = {.shortest = std::chrono::milliseconds(50), .first = longest};
    const auto begin = watch_clock::now();
    watched_nodes nodes({"edge"}, kept);
    for (int i = 0; i < 2000; ++i)
        nodes.known();
    node.wait_until_asked(3);
    EXPECT_LE(node.asked(), static_cast<size_t>((watch_clock::now() - begin) / kept.shortest) + 1);
}

TEST_F(WatchedNodes, AreNotAskedUntilSomebodyWantsToKnow)
{
    standing_in node(folder, "edge");
    {
        const watched_nodes nodes({"edge"}, quick);
    }
    EXPECT_EQ(node.asked(), 0u);
}

} // namespace
} // namespace kel_exporter
