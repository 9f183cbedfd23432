// The tables of keys against the rows that they name.
#include "kelctl/nodefile/node_keys.h"

#include "kelctl/commands/commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(NodeKeys, NameRowsAndArgumentsThatThereAre)
{
    for (const node_table &table : node_tables()) {
        const command *row = commands().find(table.row);
        ASSERT_TRUE(row) << table.name;
        for (const node_key &key : table.keys) {
            const command *of_key = key.each.empty() ? row : commands().find(key.each);
            ASSERT_TRUE(of_key) << table.name << ": " << key.name;
            EXPECT_TRUE(of_key->find_argument(key.argument)) << table.name << ": " << key.name;
        }
        for (const std::string_view before : {table.before})
            EXPECT_TRUE(before.empty() || commands().find(before)) << before;
        for (const std::string_view after : table.after)
            EXPECT_TRUE(commands().find(after)) << after;
    }
}

// Those that hand words to the driver kit as they are, or are read with --raw only, belong to the command line.
TEST(NodeKeys, CoverWhatARowTakes)
{
    const std::vector<std::string> left_out = {"--byte19", "--word20", "--shaping"};
    for (const node_table &table : node_tables())
        for (const argument &one : commands().find(table.row)->arguments) {
            const bool has_key = table.key_of(one.name) != one.name;
            EXPECT_NE(has_key, testing::Matches(testing::Contains(one.name))(left_out))
                << table.row << ": " << one.name;
        }
}

TEST(NodeKeys, HeadingTellsWhetherThereMayBeSeveral)
{
    EXPECT_EQ(node_tables()[0].heading(), "[node]");
    EXPECT_EQ(node_tables()[2].heading(), "[[path]]");
}

} // namespace
} // namespace kelctl
