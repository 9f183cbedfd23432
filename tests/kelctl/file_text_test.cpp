// Whole files, within bounds.
#include "kelctl/file_text.h"

#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::IsEmpty;
using testing::SizeIs;

TEST(FileText, IsAllOfIt)
{
    const temporary_folder folder;
    const std::string file = folder.file_with(std::string("a\0b\n", 4));
    problem_list problems;
    EXPECT_EQ(text_of_file(file, problems), std::string("a\0b\n", 4));
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
    const std::string file = testing::TempDir() + "file_text_test";
    EXPECT_FALSE(write_file(file, "longer than what comes"));
    EXPECT_FALSE(write_file(file, std::string_view("a\0b", 3)));
    problem_list problems;
    EXPECT_EQ(text_of_file(file, problems), std::string("a\0b", 3));
    std::remove(file.c_str());
}

TEST(FileText, FileThatCannotBeWrittenSaysWhy)
{
    EXPECT_EQ(write_file("/nowhere/file", "text"), "cannot be written: No such file or directory");
    EXPECT_EQ(write_file("/dev/full", "text"), "cannot be written: No space left on device");
}

} // namespace
} // namespace kelctl
