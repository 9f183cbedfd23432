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

} // namespace
} // namespace kelctl
