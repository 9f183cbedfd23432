// Folders as sessions, snapshots and relay daemons leave them.
#include "kel-trace/reading/trace_folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace kel_trace
{
namespace
{

namespace fs = std::filesystem;

class TraceFolders : public testing::Test
{
protected:
    TraceFolders()
    {
        std::string name = (fs::temp_directory_path() / "trace-folders-XXXXXX").string();
        folder = mkdtemp(name.data());
    }
    ~TraceFolders() override
    {
        fs::remove_all(folder);
    }

    void write(const fs::path &file, const char *text = "")
    {
        fs::create_directories((folder / file).parent_path());
        std::ofstream(folder / file) << text;
    }

    fs::path folder;
};

TEST_F(TraceFolders, AreFoundBelow)
{
    write("node-2/session/ust/uid/0/64-bit/metadata");
    write("node-1/session/ust/uid/0/64-bit/metadata");
    write("node-1/other/file");
    const std::vector<fs::path> expected = {folder / "node-1/session/ust/uid/0/64-bit",
                                            folder / "node-2/session/ust/uid/0/64-bit"};
    EXPECT_EQ(trace_folders(folder), expected);
}

TEST_F(TraceFolders, OneMayBeGivenItself)
{
    write("metadata");
    EXPECT_EQ(trace_folders(folder), std::vector{folder});
}

TEST_F(TraceFolders, ThereAreNoneInWhatIsNoFolder)
{
    write("file");
    EXPECT_TRUE(trace_folders(folder / "file").empty());
    EXPECT_TRUE(trace_folders(folder / "nothing").empty());
}

TEST_F(TraceFolders, StreamsAreTheOtherFiles)
{
    write("metadata");
    write("events_1");
    write("events_0");
    write(".hidden");
    write("index/events_0.idx");
    const std::vector<fs::path> expected = {folder / "events_0", folder / "events_1"};
    EXPECT_EQ(stream_files(folder), expected);
}

TEST_F(TraceFolders, NewerFormatIsKnownByItsFirstOctet)
{
    write("old/metadata", "/* CTF 1.8 */");
    write("new/metadata", "\x1e{}");
    EXPECT_FALSE(is_newer_format(folder / "old"));
    EXPECT_TRUE(is_newer_format(folder / "new"));
}

} // namespace
} // namespace kel_trace
