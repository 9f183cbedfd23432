// Which names nodes have, and in which folders they are.
#include "kelctl/remote/node_names.h"

#include "socket/listening_socket.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace kelctl
{
namespace
{

TEST(NodeName, IsTheFilesWithoutItsEnding)
{
    EXPECT_EQ(node_name_for("examples/node.toml"), "node");
    EXPECT_EQ(node_name_for("edge"), "edge");
    EXPECT_EQ(node_name_for("../a.b.toml"), "a.b");
}

TEST(NodeName, MayBeNoPartOfAPathAndNothingThatATerminalObeys)
{
    for (const char *good : {"node", "a b", "edge-7", "é", "-"})
        EXPECT_EQ(wrong_node_name(good), std::nullopt) << good;
    for (const char *wrong : {"", ".", "..", ".hidden", "a/b", "/", "a\nb", "\x1b[1m", "\x7f"})
        EXPECT_NE(wrong_node_name(wrong), std::nullopt) << wrong;
    EXPECT_EQ(wrong_node_name(std::string(64, 'a')), std::nullopt);
    EXPECT_EQ(wrong_node_name(std::string(65, 'a')),
              "the name of a node has at most 64 octets: \"" + std::string(65, 'a') + "\" has 65");
}

class NodeSockets : public testing::Test
{
protected:
    void SetUp() override
    {
        setenv("XDG_RUNTIME_DIR", runtime.path().c_str(), 1);
    }

    std::vector<std::string> paths_of(const std::string &wanted) const
    {
        std::vector<std::string> paths;
        for (const node_socket &one : node_sockets(wanted))
            paths.push_back(one.path);
        return paths;
    }

    const temporary_folder runtime;
    const std::string folder = runtime.path() + "/kelctl/";
    const std::string name = "names-" + std::to_string(getpid());
};

TEST_F(NodeSockets, AreServedWhereTheUsersSessionHasItsSockets)
{
    EXPECT_EQ(socket_path("edge"), geteuid() == 0 ? "/run/kelctl/edge.sock" : folder + "edge.sock");
    setenv("XDG_RUNTIME_DIR", "relative", 1);
    EXPECT_EQ(socket_path("edge"), "/run/kelctl/edge.sock");
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(socket_path("edge"), "/run/kelctl/edge.sock");
}

TEST_F(NodeSockets, AreFoundByTheirNames)
{
    EXPECT_THAT(paths_of(name), testing::IsEmpty());
    const sockets::listening_socket served(folder + name + ".sock", std::nullopt);
    std::ofstream(folder + "no-socket.sock") << "text";
    const sockets::listening_socket other(folder + name + ".other", std::nullopt);
    EXPECT_THAT(paths_of(name), testing::ElementsAre(folder + name + ".sock"));
    EXPECT_THAT(paths_of(""), testing::Contains(folder + name + ".sock"));
    EXPECT_THAT(paths_of(""), testing::Not(testing::Contains(folder + "no-socket.sock")));
    EXPECT_THAT(paths_of(""), testing::Not(testing::Contains(other.path())));
    EXPECT_THAT(paths_of("../kelctl/" + name), testing::IsEmpty());
}

} // namespace
} // namespace kelctl
