// A node as a service: what the service manager that started it hears.
#include "held_node.h"
#include "tests/socket/managing_socket.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <unistd.h>

namespace
{

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

const std::string path_table = "[[path]]\ndst_mac = \"02:00:00:02:00:01\"\nport = \"RLU1P\"\n";
const std::string small_node = ebcom_table + path_table;
const std::string reloading = "RELOADING=1\nMONOTONIC_USEC=[0-9]+\nSTATUS=applying node.toml";

// A manager, and a node without a terminal.
class Service : public testing::Test
{
protected:
    std::map<std::string, std::string> told_of_manager(std::map<std::string, std::string> more = {}) const
    {
        more["NOTIFY_SOCKET"] = name_;
        return more;
    }

    void apply(const held_node &node, const std::string &text)
    {
        std::ofstream(node.folder() + "/node.toml") << text;
    }

    const std::string name_ = "@kel-service-test-" + std::to_string(getpid());
    const sockets::managing_socket manager_{name_};
};

TEST_F(Service, IsReadyWhenItsSocketServes)
{
    held_node node(small_node, {}, {}, told_of_manager());
    EXPECT_EQ(manager_.hear(), "READY=1\nSTATUS=the node is up");
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    EXPECT_EQ(node.end(SIGTERM).status, 0);
    EXPECT_EQ(manager_.hear(), "STOPPING=1");
}

// A node that is not held is over at once, and no service.
TEST_F(Service, IsAHeldNodeOnly)
{
    EXPECT_EQ(kelctl_up(small_node, told_of_manager()).status, 0);
    EXPECT_EQ(manager_.hear(std::chrono::milliseconds(0)), "");
}

TEST_F(Service, ReloadIsToldFromItsBeginningToItsEnd)
{
    held_node node(small_node, {}, {"setsid"}, told_of_manager());
    EXPECT_THAT(manager_.hear(), StartsWith("READY=1"));
    apply(node, small_node + "[[path]]\ndst_mac = \"02:00:00:02:00:42\"\nport = \"RLU2P\"\n");
    node.program().signal(SIGHUP);
    EXPECT_THAT(manager_.hear(), MatchesRegex(reloading));
    EXPECT_EQ(manager_.hear(), "READY=1\nSTATUS=the node is that of node.toml");
    EXPECT_THAT(node.ask({"ebcom", "path", "list"}).out, HasSubstr("02:00:00:02:00:42"));
}

TEST_F(Service, ReloadOfAWrongFileTellsWhyAndTheNodeStays)
{
    held_node node(small_node, {}, {"setsid"}, told_of_manager());
    manager_.hear();
    apply(node, small_node + "[[path]]\ndst_mac = \"02:00:00:02:00:42\"\nport = \"nowhere\"\n");
    node.program().signal(SIGHUP);
    EXPECT_THAT(manager_.hear(), MatchesRegex(reloading));
    EXPECT_THAT(manager_.hear(), AllOf(StartsWith("READY=1\nSTATUS=not applied: node.toml:10:8: port: unknown port"),
                                       EndsWith("; node.toml: 1 problem, nothing was changed")));
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
}

TEST_F(Service, ReloadThatFailsTellsTheOperationAndItsCode)
{
    held_node node(small_node, {}, {"setsid"}, told_of_manager());
    manager_.hear();
    EXPECT_EQ(node.ask({"fault", "add", "ork_ebcom_pcep_path_create:1=-4"}).status, 0);
    apply(node, small_node + "[[path]]\ndst_mac = \"02:00:00:02:00:42\"\nport = \"RLU2P\"\n");
    node.program().signal(SIGHUP);
    EXPECT_THAT(manager_.hear(), MatchesRegex(reloading));
    EXPECT_THAT(manager_.hear(), AllOf(StartsWith("READY=1\nSTATUS=not applied: failed: kel_core_ic_ebcom_path_add("),
                                       HasSubstr("; code "),
                                       HasSubstr("; refused by the driver kit: ork_ebcom_pcep_path_create, code -4"),
                                       EndsWith("; the old node is restored")));
}

TEST_F(Service, StartThatFailsTellsTheOperationAndIsNeverReady)
{
    auto environment = told_of_manager({{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:1=-4"}});
    const file_in_folder file("node.toml", small_node);
    const auto outcome = run_kelctl({.arguments = {"up", "node.toml", "--hold", "--name", file.node_name()},
                                     .environment = environment,
                                     .folder = file.folder()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(manager_.hear(), AllOf(StartsWith("STATUS=failed: kel_core_ic_ebcom_path_add("), HasSubstr("code -4")));
    EXPECT_EQ(manager_.hear(std::chrono::milliseconds(0)), "");
}

// An interrupted start leaves nothing that could be kept. The records fill the pipe, so that it is far from its end.
TEST_F(Service, StartThatIsInterruptedSaysSoAndKeepsNothing)
{
    const file_in_folder file("node.toml", ebcom_table + path_table + "count = 10000\n");
    running_kelctl up({.arguments = {"up", "node.toml", "--hold", "--keep", "--trace", "--name", file.node_name()},
                       .environment = told_of_manager(),
                       .folder = file.folder()});
    if (!up.shows("kel_core_ic_ebcom_path_add()"))
        GTEST_SKIP() << "there is no tracer on this machine";
    up.signal(SIGTERM);
    const auto outcome = up.finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr(empty_again));
    EXPECT_EQ(manager_.hear(), "STATUS=interrupted before the node was up");
}

TEST_F(Service, WhatIsKeptAfterAFailureIsReadyToBeLookedAt)
{
    held_node node(small_node, {"--keep"}, {},
                   told_of_manager({{"KEL_SOFTNODE_FAULTS", "ork_ebcom_pcep_path_create:1=-4"}}));
    EXPECT_THAT(manager_.hear(), StartsWith("READY=1\nSTATUS=failed: kel_core_ic_ebcom_path_add("));
}

TEST_F(Service, DownOfAClientStopsIt)
{
    const held_node node(small_node, {}, {}, told_of_manager());
    manager_.hear();
    EXPECT_EQ(node.ask({"down"}).status, 0);
    EXPECT_EQ(manager_.hear(), "STOPPING=1");
}

TEST_F(Service, WatchdogHearsWhileNobodyAsks)
{
    const held_node node(small_node, {}, {}, told_of_manager({{"WATCHDOG_USEC", "100000"}}));
    EXPECT_THAT(manager_.hear(), StartsWith("READY=1"));
    for (int times = 0; times < 3; ++times)
        EXPECT_EQ(manager_.hear(), "WATCHDOG=1");
}

// Nothing else is done in the thread that configures the node.
TEST_F(Service, WatchdogHearsBetweenTheCallsOfALongReload)
{
    held_node node(small_node, {}, {"setsid"}, told_of_manager({{"WATCHDOG_USEC", "2"}}));
    manager_.hear_other_than_alive();
    apply(node, small_node + "[[path]]\ndst_mac = \"02:00:00:02:01:00\"\nport = \"RLU2P\"\ncount = 100\n");
    node.program().signal(SIGHUP);
    EXPECT_THAT(manager_.hear_other_than_alive(), MatchesRegex(reloading));
    int alive = 0;
    std::string message = manager_.hear();
    for (; message == "WATCHDOG=1"; message = manager_.hear())
        ++alive;
    EXPECT_THAT(message, StartsWith("READY=1"));
    EXPECT_GE(alive, 100);
}

TEST_F(Service, NodeStandsWithoutItsManager)
{
    held_node node(small_node, {}, {}, {{"NOTIFY_SOCKET", "/nowhere/notify"}, {"WATCHDOG_USEC", "100000"}});
    EXPECT_EQ(node.ask({"time", "show"}).status, 0);
    const auto outcome = node.end(SIGTERM);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

} // namespace
