// Counts and lists.
#include "text/wording.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace text
{
namespace
{

TEST(Wording, CountsAreInTheSingularForOneOnly)
{
    EXPECT_EQ(count_of(0, "path"), "0 paths");
    EXPECT_EQ(count_of(1, "path"), "1 path");
    EXPECT_EQ(count_of(3500, "path"), "3,500 paths");
    EXPECT_EQ(count_of(1, "entry", "entries"), "1 entry");
    EXPECT_EQ(count_of(2, "entry", "entries"), "2 entries");
}

TEST(Wording, ListsHaveTheTextBetweenTheirParts)
{
    EXPECT_EQ(joined(std::array<std::string_view, 3>{"a", "", "c"}, ", "), "a, , c");
    EXPECT_EQ(joined(std::array{1, 20}, "-"), "1-20");
    EXPECT_EQ(joined(std::array<int, 0>{}, ", "), "");
}

} // namespace
} // namespace text
