// Whole files, within bounds.
#include "kelctl/values/file_text.h"

#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sys/resource.h>

namespace kelctl
{
namespace
{

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::SizeIs;

std::string contents(const std::string &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::set<std::string> names_in(const temporary_folder &folder)
{
    std::set<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder.path()))
        names.insert(entry.path().filename());
    return names;
}

// Another process's files take the place of this one's, under the same names.
TEST(SentFiles, AreAllThatIsReadAndWritten)
{
    const temporary_folder folder;
    const std::string own = folder.file_with("own");
    {
        sent_files sent({{own, {"sent"}}, {"gone", {"", "cannot be read: it is gone"}}});
        problem_list problems;
        EXPECT_EQ(text_of_file(own, problems), "sent");
        EXPECT_THAT(problems, IsEmpty());
        EXPECT_EQ(text_of_file("gone", problems), "");
        EXPECT_EQ(text_of_file("/etc/passwd", problems), "");
        ASSERT_THAT(problems, SizeIs(2));
        EXPECT_EQ(problems[0].message, "cannot be read: it is gone");
        EXPECT_EQ(problems[1].message, "cannot be read: it was not sent along");
        EXPECT_EQ(write_file(own, "written"), std::nullopt);
        EXPECT_EQ(write_file("/nowhere/file", "too"), std::nullopt);
        EXPECT_EQ(sent.written, (std::map<std::string, std::string>{{own, "written"}, {"/nowhere/file", "too"}}));
    }
    problem_list problems;
    EXPECT_EQ(text_of_file(own, problems), "own");
    EXPECT_THAT(problems, IsEmpty());
}

TEST(FileText, IsAllOfIt)
{
    const temporary_folder folder;
    const std::string file = folder.file_with(std::string("a\0b\n", 4));
    problem_list problems;
    EXPECT_EQ(text_of_file(file, problems), std::string("a\0b\n", 4));
    EXPECT_THAT(problems, IsEmpty());
}

TEST(FileText, HasNeitherAByteOrderMarkNorCarriageReturnsAtLineEnds)
{
    const temporary_folder folder;
    problem_list problems;
    EXPECT_EQ(text_of_file(folder.file_with("\xEF\xBB\xBF"
                                            "a\r\n\rb\r\r\n\r"),
                           problems),
              "a\n\rb\r\n\r");
    EXPECT_THAT(problems, IsEmpty());
}

TEST(FileText, UnreadableOrEndlessOnesAreProblemsWithoutAPlace)
{
    for (const char *file : {"/nowhere/file", "/", "/dev/zero"}) {
        problem_list problems;
        text_of_file(file, problems);
        ASSERT_THAT(problems, SizeIs(1)) << file;
        EXPECT_EQ(problems[0].at, whole_file);
    }
}

TEST(FileText, WrittenFileHoldsTheTextAlone)
{
    const temporary_folder folder;
    const std::string file = folder.path() + "/written";
    EXPECT_FALSE(write_file(file, "longer than what comes"));
    EXPECT_FALSE(write_file(file, std::string_view("a\0b", 3)));
    EXPECT_EQ(contents(file), std::string("a\0b", 3));
    EXPECT_EQ(names_in(folder), std::set<std::string>{"written"});
}

TEST(FileText, WrittenFileKeepsItsPermissionsAndLinksLeadToIt)
{
    const temporary_folder folder;
    const std::string file = folder.file_with("before");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
    fs::create_symlink("file", folder.path() + "/link");
    EXPECT_FALSE(write_file(folder.path() + "/link", "after"));
    EXPECT_TRUE(fs::is_symlink(folder.path() + "/link"));
    EXPECT_EQ(contents(file), "after");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
}

// The room for a file is short for whoever may write none that is longer.
TEST(FileText, FileThatCannotBeCompletedStaysAsItWas)
{
    const temporary_folder folder;
    const std::string file = folder.file_with("before");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit shorter = {1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &shorter);
    const auto why = write_file(file, std::string(2000, 'x'));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(why, "cannot be written: File too large");
    EXPECT_EQ(contents(file), "before");
    EXPECT_EQ(names_in(folder), std::set<std::string>{"file"});
}

TEST(FileText, InputOfTheRunIsNotWrittenWhateverItIsCalled)
{
    const temporary_folder folder;
    const std::string file = folder.file_with("before");
    fs::create_symlink("file", folder.path() + "/link");
    problem_list problems;
    text_of_file(folder.path() + "/link", problems);
    EXPECT_EQ(write_file(file, "after"), "cannot be written: it is an input of this run");
    EXPECT_EQ(contents(file), "before");
}

TEST(FileText, FileThatCannotBeWrittenSaysWhy)
{
    EXPECT_EQ(write_file("/nowhere/file", "text"), "cannot be written: No such file or directory");
    EXPECT_EQ(write_file("/dev/full", "text"), "cannot be written: No space left on device");
}

} // namespace
} // namespace kelctl
