// Node files checked as a whole.
#include "kelctl/node/load_node_file.h"

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

const std::string ebcom = "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2]\n";

class LoadNodeFile : public testing::Test
{
protected:
    loaded_node_file load(const std::string &text, loaded_node_file (*how)(const std::string &) = load_node_file)
    {
        file = folder.file_with(text);
        return how(file);
    }

    const temporary_folder folder;
    std::string file;
};

TEST_F(LoadNodeFile, SoundOneIsGivenAndTheProcessStaysAsItIs)
{
    unsetenv("MPID");
    const auto loaded = load(ebcom + "[node]\nmpid = 77\n");
    ASSERT_TRUE(loaded.node);
    EXPECT_EQ(loaded.node->ebcom.ic_port_mtu, 1500);
    EXPECT_THAT(loaded.errors, IsEmpty());
    EXPECT_EQ(std::getenv("MPID"), nullptr);
}

TEST_F(LoadNodeFile, ProblemsOfReaderAndRulesAreErrorsInTheOrderOfTheirPlaces)
{
    const auto loaded = load(ebcom + "[[path]]\ndst_mac = \"02:00:00:01:00:01\"\nport = 0\n[wrong]\n");
    EXPECT_FALSE(loaded.node);
    EXPECT_THAT(loaded.errors,
                ElementsAre(Field(&input_error::at, position{7, 8}), Field(&input_error::at, position{8, 2})));
    EXPECT_EQ(loaded.errors[0].file, file);
}

} // namespace
} // namespace kelctl
