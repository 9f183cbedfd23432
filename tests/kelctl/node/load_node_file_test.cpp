// Node files checked as a whole.
#include "kelctl/node/load_node_file.h"

#include "kelctl/jobs/take_down.h"
#include "kelctl/language/command_text.h"
#include "kelctl/node/read_back.h"
#include "kelctl/values/mp_id.h"
#include "script_session.h"
#include "softnode/softnode.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

const std::string ebcom = "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2]\n";

class LoadNodeFile : public testing::Test
{
protected:
    loaded_lines load(const std::string &text)
    {
        file = folder.file_with(text);
        return load_node_file(file, commands());
    }

    const temporary_folder folder;
    std::string file;
};

TEST_F(LoadNodeFile, SoundOneIsGivenAndTheProcessStaysAsItIs)
{
    unsetenv("MPID");
    const auto loaded = load(ebcom + "[node]\nmpid = 77\n");
    EXPECT_THAT(loaded.errors, IsEmpty());
    EXPECT_THAT(loaded.lines, SizeIs(4));
    EXPECT_EQ(std::getenv("MPID"), nullptr);
}

TEST_F(LoadNodeFile, ProblemsOfReaderAndRulesAreErrorsInTheOrderOfTheirPlaces)
{
    const auto loaded = load(ebcom + "[[path]]\ndst_mac = \"02:00:00:01:00:01\"\nport = 0\n[wrong]\n");
    EXPECT_THAT(loaded.errors,
                ElementsAre(Field(&input_error::at, position{7, 8}), Field(&input_error::at, position{8, 2})));
    EXPECT_EQ(loaded.errors[0].file, file);
}

constexpr const char *small_node = R"([[path]]
dst_mac = "02:00:00:02:00:01"
port = "RLU1P"
shaping = { rate = "100 Mbit/s", burst = "64 KiB", threshold = 1024 }
[[path]]
dst_mac = "02:00:00:03:00:fe"
port = 42
count = 3
[[pcep]]
id = 1
remote_id = 0xABCDEF
local_mac = "02:00:00:02:00:01"
remote_mac = "02:00:00:02:00:09"
vlan = 4095
[[multicast]]
id = 300
members = [1]
[[multicast]]
id = 2
[[traffic]]
from = 300
octets = 64
frames_per_second = 10
)";

TEST_F(LoadNodeFile, LinesBringTheNodeUpAndAreUndone)
{
    softnode_reset();
    script_session here;
    for (const invocation &line : load(ebcom + small_node).lines)
        ASSERT_EQ(here.perform(line).status, exit_done) << text_of(line);

    const snapshot up = read_snapshot(settled_document().value());
    EXPECT_EQ(up.globals->mtu, 1500);
    EXPECT_TRUE(up.interface);
    EXPECT_THAT(up.schedulers, SizeIs(12));
    ASSERT_THAT(up.queues, SizeIs(2));
    EXPECT_EQ(up.queues[0].rate, 100'000u);
    EXPECT_EQ(up.queues[0].burst, 65'536u);
    EXPECT_EQ(up.queues[0].threshold, 1024u);
    EXPECT_FALSE(up.queues[1].shaped);
    EXPECT_THAT(up.paths, SizeIs(4));
    EXPECT_THAT(up.pceps, SizeIs(1));
    EXPECT_THAT(up.groups, SizeIs(2));

    for (const undone_command &one : take_down(here))
        EXPECT_THAT(one.failures, IsEmpty());
    EXPECT_TRUE(current_snapshot()->empty());
}

TEST_F(LoadNodeFile, SizeIsKnownBeforeAnythingIsMade)
{
    const node_size size = size_of(load(ebcom + small_node).lines);
    EXPECT_EQ(size.paths, 4u);
    EXPECT_EQ(size.pceps, 1u);
    EXPECT_EQ(size.groups, 2u);
    EXPECT_EQ(size.streams, 1u);
}

// The library keeps the first one, and would go on with it.
TEST_F(LoadNodeFile, AnotherMpIdInTheSameProcessIsRefusedByName)
{
    script_session here;
    EXPECT_EQ(here.run("mpid 5").status, exit_done);
    EXPECT_EQ(own_mp_id(), 5);
    EXPECT_EQ(here.run("mpid 5").status, exit_done);
    const result other = here.run("mpid 6");
    EXPECT_EQ(other.status, exit_operation_failed);
    ASSERT_THAT(other.errors, SizeIs(1));
    EXPECT_EQ(other.errors[0].message, "the MP id cannot change to 6: the library already uses 5 in this process");
    EXPECT_EQ(own_mp_id(), 5);
}

} // namespace
} // namespace kelctl
