// Where the history is kept, by the environment.
#include "kelctl/history_file.h"

#include "temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace kelctl
{
namespace
{

namespace fs = std::filesystem;

class HistoryFile : public testing::Test
{
protected:
    HistoryFile()
    {
        unsetenv("XDG_STATE_HOME");
        setenv("HOME", folder.c_str(), 1);
    }

    const temporary_folder own;
    const std::string folder = own.path();
};

TEST_F(HistoryFile, IsInTheStateFolderOfTheHomeAndForItsOwnerOnly)
{
    EXPECT_EQ(history_file(), folder + "/.local/state/kelctl/history");
    EXPECT_EQ(fs::status(history_file()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(folder + "/.local/state/kelctl").permissions(), fs::perms::owner_all);
}

TEST_F(HistoryFile, IsInTheStateFolderThatTheEnvironmentNames)
{
    setenv("XDG_STATE_HOME", (folder + "/state").c_str(), 1);
    EXPECT_EQ(history_file(), folder + "/state/kelctl/history");
}

TEST_F(HistoryFile, RelativeNamesDoNotCount)
{
    setenv("XDG_STATE_HOME", "state", 1);
    EXPECT_EQ(history_file(), folder + "/.local/state/kelctl/history");
}

TEST_F(HistoryFile, IsNoneWhereItCannotBe)
{
    unsetenv("HOME");
    EXPECT_EQ(history_file(), "");
    setenv("HOME", "/dev/null", 1);
    EXPECT_EQ(history_file(), "");
}

} // namespace
} // namespace kelctl
