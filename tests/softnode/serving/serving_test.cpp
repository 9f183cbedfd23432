/*
 * serving_test.cpp - processes that are asked from outside, while they call, fork and exit.
 */
#include "control_process.h"

#include "socket/client.h"
#include "socket/socket_error.h"
#include "tests/notation/print.h"
#include "tests/refused_calls.h"
#include "tests/socket/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace
{

using json = notation::document;
using notation::read_json;
using testing::HasSubstr;

constexpr sockets::protocol spoken{"softnode", 1};
constexpr sockets::client_limits generous{.patience = std::chrono::minutes(1)};

class Served : public testing::Test
{
protected:
    std::vector<std::string> variables() const
    {
        return {"KEL_SOFTNODE_SOCKET=" + path};
    }

    // Of a process whose children end with exit(): a leak checker would look there for threads of their parent.
    std::vector<std::string> variables_of_a_parent() const
    {
        return {"KEL_SOFTNODE_SOCKET=" + path, "ASAN_OPTIONS=detect_leaks=0"};
    }

    json asked(const json &request) const
    {
        return read_json(sockets::client(path, spoken, generous).ask(to_json(request))).at("result");
    }

    const sockets::folder here;
    const std::string path = here.file("served/node.sock");
};

/* The text after a heading in a thread's status file. */
std::string status_of(const std::filesystem::path &thread, const std::string &heading)
{
    std::ifstream status(thread / "status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(heading + ":\t"))
            return line.substr(heading.size() + 2);
    return "";
}

std::filesystem::directory_iterator threads_of(const ControlProcess &process)
{
    return std::filesystem::directory_iterator("/proc/" + std::to_string(process.id()) + "/task");
}

/* A sanitizer may have threads of its own. */
bool has_serving_thread(const ControlProcess &process)
{
    for (const auto &thread : threads_of(process))
        if (status_of(thread, "Name") == "kel-softnode")
            return true;
    return false;
}

bool has_socket(const ControlProcess &process)
{
    for (const auto &one : std::filesystem::directory_iterator("/proc/" + std::to_string(process.id()) + "/fd"))
        if (std::filesystem::read_symlink(one).string().starts_with("socket:"))
            return true;
    return false;
}

/* Asks again and again, until the server is gone. */
class Crowd
{
public:
    explicit Crowd(const std::string &path) : client_(path, spoken, generous), thread_([this] { ask(); })
    {
    }
    ~Crowd()
    {
        ended_ = true;
        thread_.join();
    }

private:
    void ask()
    {
        try {
            while (!ended_)
                client_.ask(R"({"function":"snapshot"})");
        } catch (const sockets::socket_error &) {
            return;
        }
    }

    sockets::client client_;
    std::atomic<bool> ended_ = false;
    std::thread thread_;
};

} // namespace

TEST_F(Served, NothingWithoutTheVariable)
{
    ControlProcess process(SERVING_VICTIM, {"KEL_SOFTNODE_SOCKET="});
    EXPECT_EQ(process.ask("attach"), "0");
    EXPECT_FALSE(has_serving_thread(process));
    EXPECT_FALSE(has_socket(process));
    EXPECT_EQ(process.end(), 0);
}

TEST_F(Served, NothingInAProcessWithRaisedRights)
{
    ControlProcess process(RAISED_SERVING_VICTIM, variables());
    EXPECT_EQ(process.ask("attach"), "0");
    EXPECT_FALSE(has_serving_thread(process));
    EXPECT_FALSE(has_socket(process));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Served, FromTheFirstCallToTheExit)
{
    ControlProcess process(SERVING_VICTIM, variables());
    EXPECT_EQ(process.ask("attach"), "0");
    EXPECT_TRUE(has_serving_thread(process));
    EXPECT_EQ(asked({{"function", "snapshot"}}).at("calls").at("kel_init_attach"), 1);
    EXPECT_EQ(process.end(), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Served, TellsWhoItIs)
{
    ControlProcess process(SERVING_VICTIM, variables());
    process.ask("attach");
    const sockets::client client(path, spoken, generous);
    EXPECT_EQ(client.greeting().at("pid").number<pid_t>(), process.id());
    EXPECT_EQ(client.greeting().at("program").text(), std::filesystem::path(SERVING_VICTIM).filename());
}

TEST_F(Served, CallsFailAsIsAskedFor)
{
    ControlProcess process(SERVING_VICTIM, variables());
    EXPECT_EQ(process.ask("attach"), "0");
    asked({{"function", "faults_add"}, {"rules", "kel_init_attach=10"}});
    EXPECT_EQ(process.ask("attach"), "10");
    asked({{"function", "faults_clear"}});
    EXPECT_EQ(process.ask("attach"), "0");
}

TEST_F(Served, ByAThreadThatTakesNoSignals)
{
    ControlProcess process(SERVING_VICTIM, variables());
    process.ask("attach");
    for (const auto &thread : threads_of(process)) {
        const std::string blocked = status_of(thread, "SigBlk");
        const auto mask = std::strtoull(blocked.c_str(), nullptr, 16);
        const bool serves = status_of(thread, "Name") == "kel-softnode";
        for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGTERM, SIGCHLD, SIGUSR1, SIGRTMIN, SIGRTMAX})
            EXPECT_TRUE(!serves || (mask >> (signal - 1) & 1) == 1) << signal;
        EXPECT_TRUE(serves || std::stoi(thread.path().filename()) != process.id() || mask == 0);
    }
    EXPECT_TRUE(has_serving_thread(process));
}

TEST_F(Served, NotWhereAnotherProcessIs)
{
    ControlProcess first(SERVING_VICTIM, variables());
    first.ask("attach");
    ControlProcess second(SERVING_VICTIM, variables());
    EXPECT_EQ(second.ask("attach"), "libkel-softnode: KEL_SOFTNODE_SOCKET: " + path + ": another process serves it");
    EXPECT_EQ(second.line(), "0");
    EXPECT_EQ(second.end(), 0);
    EXPECT_EQ(asked({{"function", "snapshot"}}).at("calls").at("kel_init_attach"), 1);
}

TEST_F(Served, NotWithoutAThread)
{
    const std::string said = where_refused({{SYS_clone3, EAGAIN}}, [this] {
        ControlProcess process(SERVING_VICTIM, variables());
        const std::string warning = process.ask("attach");
        const std::string result = process.line();
        return warning + " " + result + " " + status_of(*threads_of(process), "SigBlk");
    });
    EXPECT_EQ(said, "libkel-softnode: KEL_SOFTNODE_SOCKET: Resource temporarily unavailable 0 0000000000000000");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Served, AfterAProcessThatWasKilled)
{
    {
        ControlProcess killed(SERVING_VICTIM, variables());
        killed.ask("attach");
    }
    EXPECT_TRUE(std::filesystem::exists(path));
    ControlProcess process(SERVING_VICTIM, variables());
    EXPECT_EQ(process.ask("attach"), "0");
    EXPECT_EQ(asked({{"function", "time"}}), 0);
}

TEST_F(Served, WhileItForksAndIsAsked)
{
    constexpr int forks = 100;
    ControlProcess process(SERVING_VICTIM, variables_of_a_parent());
    process.ask("attach");
    const Crowd first(path);
    const Crowd second(path);
    for (int i = 0; i < forks; ++i)
        ASSERT_EQ(process.ask("fork"), "0") << i;
    EXPECT_EQ(asked({{"function", "snapshot"}}).at("calls").at("kel_init_attach"), 1);
}

TEST_F(Served, NotByAChildsChild)
{
    ControlProcess process(SERVING_VICTIM, variables_of_a_parent());
    process.ask("attach");
    EXPECT_EQ(process.ask("descend"), "0");
    EXPECT_EQ(asked({{"function", "snapshot"}}).at("calls").at("kel_init_attach"), 1);
}

TEST_F(Served, NotByAChildOfAProcessThatEnded)
{
    ControlProcess process(SERVING_VICTIM, variables());
    process.ask("attach");
    sockets::client client(path, spoken, generous);
    const pid_t child = std::stoi(process.ask("linger"));
    EXPECT_EQ(process.end(), 0);
    EXPECT_THROW(client.ask(R"({"function":"time"})"), sockets::socket_error);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(kill(child, SIGKILL), 0);
}

TEST_F(Served, WhileItExitsAndIsAsked)
{
    for (int i = 0; i < 20; ++i) {
        ControlProcess process(SERVING_VICTIM, variables());
        process.ask("attach");
        const Crowd first(path);
        const Crowd second(path);
        ASSERT_EQ(process.end(), 0) << i;
        ASSERT_FALSE(std::filesystem::exists(path));
    }
}
