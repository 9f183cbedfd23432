// Calls of a process that is made up: what it is asked, and what becomes of its answers.
#include "kelctl/accelerator/remote_accelerator.h"

#include "made_up_process.h"
#include "notation/json.h"
#include "tests/socket/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace kelctl
{
namespace
{

using testing::HasSubstr;

constexpr sockets::protocol spoken = {.name = "softnode", .version = 1};

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
    const made_up_process process(path, spoken, [](std::string_view request) {
        return notation::to_json({{"result", {{"asked", request}}}});
    });
    EXPECT_EQ(there.call("time").at("asked").text(), R"({"function":"time"})");
    EXPECT_EQ(there.call("send", {{"id", 7}, {"frames", 1}}).at("asked").text(),
              R"({"function":"send","id":7,"frames":1})");
}

TEST_F(RemoteAccelerator, ThrowsWhatTheProcessRefuses)
{
    const made_up_process process(path, spoken, [](std::string_view) { return R"({"error":"not today"})"; });
    EXPECT_EQ(refusal(), path + ": not today");
}

TEST_F(RemoteAccelerator, ThrowsWhenItDoesNotUnderstand)
{
    std::string answer = "220 mail";
    const made_up_process process(path, spoken, [&](std::string_view) { return answer; });
    EXPECT_NE(refusal(), "");
    answer = "{}";
    EXPECT_NE(refusal(), "");
}

TEST_F(RemoteAccelerator, ConnectsAgainAfterAFailure)
{
    const auto answer = [](std::string_view) { return R"({"result":1})"; };
    auto process = std::make_unique<made_up_process>(path, spoken, answer);
    EXPECT_EQ(refusal(), "");
    process.reset();
    EXPECT_THAT(refusal(), HasSubstr("the server has disconnected"));
    EXPECT_THAT(refusal(), HasSubstr("no connection"));
    process = std::make_unique<made_up_process>(path, spoken, answer);
    EXPECT_EQ(refusal(), "");
}

TEST_F(RemoteAccelerator, AsksNoServerOfAnotherVersion)
{
    const made_up_process process(path, {.name = "softnode", .version = 2}, [](std::string_view) { return "{}"; });
    EXPECT_EQ(refusal(), path + ": the server speaks version 2 of the protocol \"softnode\", not 1");
}

} // namespace
} // namespace kelctl
