// Where the history is kept, by the environment, and what is left alone.
#include "kelctl/input/history_file.h"

#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/stat.h>

namespace kelctl
{
namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class HistoryFile : public testing::Test
{
protected:
    HistoryFile()
    {
        unsetenv("XDG_STATE_HOME");
        setenv("HOME", folder.c_str(), 1);
    }

    // What is kept beyond the life of a shell.
    static std::deque<std::string> kept()
    {
        return history_file().lines();
    }

    static void type(const std::string &line)
    {
        history_file().add(line);
    }

    void make_parent() const
    {
        fs::create_directories(fs::path(place).parent_path());
    }

    const temporary_folder own;
    const std::string folder = own.path();
    const std::string place = folder + "/.local/state/kelctl/history";
};

TEST_F(HistoryFile, IsInTheStateFolderOfTheHomeAndForItsOwnerOnly)
{
    type("one");
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(folder + "/.local/state/kelctl").permissions(), fs::perms::owner_all);
    EXPECT_THAT(kept(), ElementsAre("one"));
}

TEST_F(HistoryFile, IsInTheStateFolderThatTheEnvironmentNames)
{
    setenv("XDG_STATE_HOME", (folder + "/state").c_str(), 1);
    type("one");
    EXPECT_TRUE(fs::exists(folder + "/state/kelctl/history"));
}

TEST_F(HistoryFile, RelativeNamesDoNotCount)
{
    setenv("XDG_STATE_HOME", "state", 1);
    type("one");
    EXPECT_TRUE(fs::exists(place));
}

TEST_F(HistoryFile, IsNoneWhereItCannotBe)
{
    for (const char *home : {"", "/dev/null"}) {
        setenv("HOME", home, 1);
        type("one");
        EXPECT_THAT(kept(), IsEmpty());
        EXPECT_EQ(history_file().refusal(), "");
    }
}

TEST_F(HistoryFile, LastLineMayHaveNoEnd)
{
    make_parent();
    std::ofstream(place) << "one\ntwo";
    EXPECT_THAT(kept(), ElementsAre("one", "two"));
}

TEST_F(HistoryFile, KeepsTheLastThousandLinesAndItsPermissions)
{
    make_parent();
    {
        std::ofstream lines(place);
        for (int i = 1; i <= 3000; ++i)
            lines << i << '\n';
    }
    fs::permissions(place, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    type("newest");
    const auto lines = kept();
    ASSERT_EQ(lines.size(), 1000u);
    EXPECT_EQ(lines.front(), "2002");
    EXPECT_EQ(lines.back(), "newest");
    std::ifstream file(place);
    EXPECT_EQ(std::count(std::istreambuf_iterator<char>(file), {}, '\n'), 1000);
    EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST_F(HistoryFile, LinkIsLeftAloneWithWhatItLeadsTo)
{
    make_parent();
    const std::string other = own.file_with("another file\n");
    const auto permissions = fs::status(other).permissions();
    fs::create_symlink(other, place);
    EXPECT_EQ(history_file().refusal(),
              place + ": not a regular file that you own and can write; the history is not saved");
    type("one");
    EXPECT_THAT(kept(), IsEmpty());
    std::ifstream file(other);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "another file\n");
    EXPECT_EQ(fs::status(other).permissions(), permissions);
}

TEST_F(HistoryFile, PipeIsNotWaitedFor)
{
    make_parent();
    ASSERT_EQ(mkfifo(place.c_str(), 0600), 0);
    EXPECT_NE(history_file().refusal(), "");
    type("one");
    EXPECT_THAT(kept(), IsEmpty());
}

} // namespace
} // namespace kelctl
