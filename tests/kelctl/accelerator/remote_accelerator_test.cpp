// Calls of a process that is made up: what it is asked, and what becomes of its answers.
#include "kelctl/accelerator/remote_accelerator.h"

#include "notation/json.h"
#include "socket/server.h"
#include "tests/socket/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/eventfd.h>
#include <thread>
#include <utility>

namespace kelctl
{
namespace
{

using testing::HasSubstr;

// Answers in a thread of its own.
class made_up_process
{
public:
    made_up_process(const std::string &path, sockets::server::handler answer, unsigned version = 1)
        : server_({.path = path}, {.name = "softnode", .version = version}), answer_(std::move(answer)),
          thread_([this] { serve(); })
    {
    }
    ~made_up_process()
    {
        eventfd_write(end_.number(), 1);
        thread_.join();
    }

private:
    void serve()
    {
        std::array<pollfd, 2> wanted = {{{server_.number(), POLLIN, 0}, {end_.number(), POLLIN, 0}}};
        while (poll(wanted.data(), wanted.size(), -1) < 0 || wanted[1].revents == 0)
            server_.serve(answer_);
    }

    sockets::server server_;
    sockets::server::handler answer_;
    sockets::descriptor end_{eventfd(0, EFD_CLOEXEC)};
    std::thread thread_;
};

class RemoteAccelerator : public testing::Test
{
protected:
    std::string refusal()
    {
        try {
            there.call("time");
        } catch (const std::exception &refused) {
            return refused.what();
        }
        return "";
    }

    const sockets::folder folder;
    const std::string path = folder.file("a.sock");
    remote_accelerator there{path};
};

TEST_F(RemoteAccelerator, SendsTheFunctionAndItsArguments)
{
    const made_up_process process(path, [](std::string_view request) {
        return notation::to_json({{"result", {{"asked", request}}}});
    });
    EXPECT_EQ(there.call("time").at("asked").text(), R"({"function":"time"})");
    EXPECT_EQ(there.call("send", {{"id", 7}, {"frames", 1}}).at("asked").text(),
              R"({"function":"send","id":7,"frames":1})");
}

TEST_F(RemoteAccelerator, ThrowsWhatTheProcessRefuses)
{
    const made_up_process process(path, [](std::string_view) { return R"({"error":"not today"})"; });
    EXPECT_EQ(refusal(), path + ": not today");
}

TEST_F(RemoteAccelerator, ThrowsWhenItDoesNotUnderstand)
{
    std::string answer = "220 mail";
    const made_up_process process(path, [&](std::string_view) { return answer; });
    EXPECT_NE(refusal(), "");
    answer = "{}";
    EXPECT_NE(refusal(), "");
}

TEST_F(RemoteAccelerator, ConnectsAgainAfterAFailure)
{
    const auto answer = [](std::string_view) { return R"({"result":1})"; };
    auto process = std::make_unique<made_up_process>(path, answer);
    EXPECT_EQ(refusal(), "");
    process.reset();
    EXPECT_THAT(refusal(), HasSubstr("the server has disconnected"));
    EXPECT_THAT(refusal(), HasSubstr("no connection"));
    process = std::make_unique<made_up_process>(path, answer);
    EXPECT_EQ(refusal(), "");
}

TEST_F(RemoteAccelerator, AsksNoServerOfAnotherVersion)
{
    const made_up_process process(
        path, [](std::string_view) { return "{}"; }, 2);
    EXPECT_EQ(refusal(), path + ": the server speaks version 2 of the protocol \"softnode\", not 1");
}

} // namespace
} // namespace kelctl
