// Arguments by their names.
#include "kelctl/language/arguments.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(Arguments, AreGivenByNameAndType)
{
    arguments given;
    given.set("--vlan", int64_t{4095});
    given.set("ID", int64_t{7});
    EXPECT_TRUE(given.has("ID"));
    EXPECT_FALSE(given.has("MAC"));
    EXPECT_EQ(given.number<uint16_t>("--vlan"), 4095);
    EXPECT_EQ(given.id("ID"), 7u);
}

TEST(Arguments, TheValueGivenLastCounts)
{
    arguments given;
    given.set("ID", int64_t{7});
    given.set("ID", int64_t{8});
    EXPECT_EQ(given.id("ID"), 8u);
    given.erase("ID");
    EXPECT_FALSE(given.has("ID"));
}

TEST(Arguments, AskingForWhatIsNotThereIsAMistakeOfTheRow)
{
    arguments given;
    given.set("FILE", std::string("7"));
    EXPECT_THROW(given.number<int>("FILE"), std::bad_variant_access);
    EXPECT_THROW(given.text("TEXT"), std::logic_error);
}

} // namespace
} // namespace kelctl
