// What a service manager hears, and where there is none.
#include "socket/service_manager.h"

#include "tests/refused_calls.h"
#include "tests/socket/folder.h"
#include "tests/socket/managing_socket.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace sockets
{
namespace
{

using namespace std::chrono_literals;
using testing::MatchesRegex;

// Every test is a process of its own.
class ServiceManager : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *variable : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"})
            unsetenv(variable);
    }

    // The environment that the manager gives.
    static void set(const char *variable, const std::string &value)
    {
        setenv(variable, value.c_str(), 1);
    }

    const folder folder_;
    const std::string path_ = folder_.file("notify");
};

TEST_F(ServiceManager, HearsEachMessage)
{
    const managing_socket manager(path_);
    ASSERT_TRUE(manager.open());
    set("NOTIFY_SOCKET", path_);
    service_manager told;
    told.ready("up");
    EXPECT_EQ(manager.hear(), "READY=1\nSTATUS=up");
    told.status("idle");
    EXPECT_EQ(manager.hear(), "STATUS=idle");
    told.stopping();
    EXPECT_EQ(manager.hear(), "STOPPING=1");
}

TEST_F(ServiceManager, HearsWhenAReloadBegan)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    service_manager told;
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::microseconds>(
                   std::chrono::steady_clock::now().time_since_epoch())
            .count();
    };
    const auto before = now();
    told.reloading("reading");
    const auto after = now();
    const std::string heard = manager.hear();
    ASSERT_THAT(heard, MatchesRegex("RELOADING=1\nMONOTONIC_USEC=[0-9]+\nSTATUS=reading"));
    const auto began = std::stoll(heard.substr(heard.find("USEC=") + 5));
    EXPECT_LE(before, began);
    EXPECT_LE(began, after);
}

TEST_F(ServiceManager, MayListenOutsideTheFileSystem)
{
    const std::string name = "@kel-test-" + std::to_string(getpid());
    const managing_socket manager(name);
    ASSERT_TRUE(manager.open());
    set("NOTIFY_SOCKET", name);
    service_manager().stopping();
    EXPECT_EQ(manager.hear(), "STOPPING=1");
}

// A path of as many octets as there are has no room for an end.
TEST_F(ServiceManager, MayHaveTheLongestPath)
{
    const std::string longest = path_ + std::string(108 - path_.size(), 'x');
    const managing_socket manager(longest);
    ASSERT_TRUE(manager.open());
    set("NOTIFY_SOCKET", longest);
    service_manager().stopping();
    EXPECT_EQ(manager.hear(), "STOPPING=1");
}

TEST_F(ServiceManager, LinesOfAStatusBecomeOne)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    service_manager().status("failed: start()\n  code 5\n\n\tREADY=1\n");
    EXPECT_EQ(manager.hear(), "STATUS=failed: start(); code 5; READY=1");
}

TEST_F(ServiceManager, NobodyListeningIsNoMatter)
{
    for (const std::string &name :
         {std::string(), std::string("@"), std::string("relative"), std::string("/nowhere/at/all"),
          "@kel-nobody-" + std::to_string(getpid()), "/" + std::string(200, 'x')}) {
        set("NOTIFY_SOCKET", name);
        set("WATCHDOG_USEC", "1000");
        service_manager told;
        told.ready("up");
        told.alive();
        told.stopping();
    }
}

// A queue that is full, of a manager that is stopped.
TEST_F(ServiceManager, ManagerThatDoesNotReadMissesMessages)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    service_manager told;
    const std::string large(100'000, 'x'); // a sender has room for 212,992 octets
    for (int sent = 0; sent < 4; ++sent)
        told.status(large);
    int heard = 0;
    while (!manager.hear(0ms).empty())
        ++heard;
    EXPECT_GT(heard, 0);
    EXPECT_LT(heard, 4);
}

TEST_F(ServiceManager, EnvironmentStaysForOthersToRead)
{
    set("NOTIFY_SOCKET", path_);
    const service_manager told;
    EXPECT_EQ(std::getenv("NOTIFY_SOCKET"), path_);
}

// ---- The watchdog ----

// How long the process may rest, once it has said that it is alive.
std::chrono::milliseconds rest_after_alive(service_manager &told)
{
    told.alive();
    return told.rest_within(1h);
}

TEST_F(ServiceManager, WatchdogHearsAtHalfOfItsTime)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    set("WATCHDOG_USEC", "60000000");
    service_manager told;
    EXPECT_EQ(told.rest_within(1h), 0ms);
    const auto rest = rest_after_alive(told);
    EXPECT_GT(rest, 0ms);
    EXPECT_LE(rest, 30s);
    EXPECT_EQ(told.rest_within(0ms), 0ms);
    EXPECT_EQ(manager.hear(), "WATCHDOG=1");
    told.alive(); // not due
    told.stopping();
    EXPECT_EQ(manager.hear(), "STOPPING=1");
}

TEST_F(ServiceManager, WatchdogHearsAgainWhenItIsDue)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    set("WATCHDOG_USEC", "20000");
    service_manager told;
    for (int times = 0; times < 3; ++times) {
        std::this_thread::sleep_for(rest_after_alive(told));
        EXPECT_EQ(manager.hear(), "WATCHDOG=1");
        EXPECT_EQ(told.rest_within(1h), 0ms);
    }
}

TEST_F(ServiceManager, NoWatchdogMeansNoHurry)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    const auto rests = [](const std::string &time, const std::string &process) {
        set("WATCHDOG_USEC", time);
        set("WATCHDOG_PID", process);
        service_manager told;
        return rest_after_alive(told);
    };
    for (const char *wrong : {"", "0", "-5", "many", "5s", "99999999999999999999"})
        EXPECT_EQ(rests(wrong, std::to_string(getpid())), 1h) << wrong;
    EXPECT_EQ(rests("60000000", std::to_string(getppid())), 1h); // another process was asked
    EXPECT_EQ(manager.hear(0ms), "");
    EXPECT_LT(rests("60000000", std::to_string(getpid())), 1h);
}

TEST_F(ServiceManager, NoManagerHasNoWatchdog)
{
    set("WATCHDOG_USEC", "60000000");
    service_manager told;
    EXPECT_EQ(rest_after_alive(told), 1h);
}

TEST_F(ServiceManager, HearsNothingWithoutASocket)
{
    const managing_socket manager(path_);
    set("NOTIFY_SOCKET", path_);
    set("WATCHDOG_USEC", "2000000");
    EXPECT_EQ(where_refused({{SYS_socket, EMFILE}},
                            [] {
                                service_manager told;
                                told.ready("up");
                                return told.rest_within(1h) == 1h ? "no hurry" : "in a hurry";
                            }),
              "no hurry");
    EXPECT_EQ(manager.hear(0ms), "");
}

} // namespace
} // namespace sockets
