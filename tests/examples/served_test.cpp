// The examples, looked into and loaded with traffic from outside while they are what they are for users: programs that
// know nothing of the software accelerator.
#include "socket/client.h"
#include "tests/notation/print.h"
#include "tests/socket/folder.h"
#include "tests/softnode/serving/control_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace
{

using json = notation::document;

class ServedExample : public testing::TestWithParam<const char *>
{
protected:
    json asked(const json &request)
    {
        return notation::read_json(client_.ask(to_json(request))).at("result");
    }

    const sockets::folder here_;
    const std::string path_ = here_.file("node.sock");
    ControlProcess process_{GetParam(), {"KEL_SOFTNODE_SOCKET=" + path_, "LD_PRELOAD=" PAUSE}};
    const bool up_ = process_.line() == "up";
    sockets::client client_{path_, {"softnode", 1}, {.patience = std::chrono::minutes(1)}};
};

} // namespace

TEST_P(ServedExample, PassesTrafficAndEndsAsEver)
{
    ASSERT_TRUE(up_);
    EXPECT_EQ(asked({{"function", "snapshot"}}).at("pceps").size(), 1U);
    EXPECT_EQ(asked({{"function", "traffic_offer"},
                     {"mac", "02:00:00:02:00:01"},
                     {"frames", 1000},
                     {"octets_per_frame", 1500}}),
              0);
    asked({{"function", "time_advance"}, {"nanoseconds", 60'000'000}});
    const json queues = asked({{"function", "queues"}});
    ASSERT_EQ(queues.size(), 1U);
    // The burst, and 60 ms of 100 Mbit/s.
    const auto sent = queues[0].at("counters").at("sent").at("octets").number<uint64_t>();
    EXPECT_GE(sent, 65'536U + 750'000U - 1500U);
    EXPECT_LE(sent, 65'536U + 750'000U + 1500U);
    EXPECT_EQ(asked({{"function", "graph"}}).text().substr(0, 7), "digraph");
    EXPECT_EQ(process_.end(), 0);
    EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_P(ServedExample, FailsWhenItsCallsAreMadeTo)
{
    ASSERT_TRUE(up_);
    asked({{"function", "faults_add"}, {"rules", "ork_unbind=-4"}});
    EXPECT_NE(process_.end(), 0);
}

INSTANTIATE_TEST_SUITE_P(Programs, ServedExample, testing::Values(MINIMAL_EXAMPLE, WHOLE_NODE_EXAMPLE),
                         [](const auto &about) { return std::string(about.index == 0 ? "minimal" : "whole_node"); });
