// What becomes of answers of a node that is made up.
#include "kelctl/remote/remote_node.h"

#include "kelctl/remote/node_names.h"
#include "made_up_process.h"
#include "script_session.h"
#include "temporary_folder.h"
#include "terminal/terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <unistd.h>

namespace kelctl
{
namespace
{

using testing::HasSubstr;

class RemoteNode : public testing::Test
{
protected:
    RemoteNode()
    {
        setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    }

    std::string refusal()
    {
        try {
            there.ask({{"ask", "words"}});
        } catch (const std::exception &refused) {
            return refused.what();
        }
        return "";
    }

    const temporary_folder runtime;
    const std::string name = "made-up-" + std::to_string(getpid());
    const std::string path = runtime.path() + "/kelctl/" + name + ".sock";
    remote_node there{name};
};

TEST_F(RemoteNode, RefusalHasItsName)
{
    const made_up_process process(path, node_protocol, [](std::string_view) { return R"({"error":"not today"})"; });
    EXPECT_EQ(refusal(), name + ": not today");
}

TEST_F(RemoteNode, ConnectsAgainAfterAFailure)
{
    const auto answer = [](std::string_view) { return "{}"; };
    auto process = std::make_unique<made_up_process>(path, node_protocol, answer);
    EXPECT_EQ(refusal(), "");
    process.reset();
    EXPECT_THAT(refusal(), HasSubstr("the server has disconnected"));
    process = std::make_unique<made_up_process>(path, node_protocol, answer);
    EXPECT_EQ(refusal(), "");
}

// Root's own is in another folder than that of the session.
TEST_F(RemoteNode, OfTwoThatDoNotAnswerTheFirstSaysWhy)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root has two folders that it can write";
    const auto answer = [](std::string_view) { return "{}"; };
    const made_up_process other(path, {.name = "kelctl", .version = 8}, answer);
    const made_up_process first(socket_path(name), {.name = "kelctl", .version = 7}, answer);
    EXPECT_THAT(refusal(), HasSubstr("speaks version 7"));
}

TEST_F(RemoteNode, FileOfACommandThatFailedStaysAsItIs)
{
    const made_up_process process(path, node_protocol,
                                  [](std::string_view) { return R"({"result":{"status":1},"tracer":false})"; });
    const std::string file = runtime.file_with("old");
    const answer answered =
        there.carry_out(asked("export --output " + file), {.shown_on = {.paint = terminal::painter(false)}});
    EXPECT_EQ(answered.done.status, exit_operation_failed);
    EXPECT_EQ(std::filesystem::file_size(file), 3u);
}

} // namespace
} // namespace kelctl
