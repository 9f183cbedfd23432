// Which commands undo which, and what still stands.
#include "kelctl/undo.h"

#include "kelctl/command_line.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

invocation asked(const char *line)
{
    return parse(words_of(line), place::script);
}

TEST(Undo, RowsNameCommandsThatTakeTheirArguments)
{
    size_t undoable = 0;
    for (const command &row : commands()) {
        if (row.undo.empty())
            continue;
        ++undoable;
        const command *undo = find_command(row.undo);
        ASSERT_NE(undo, nullptr) << row.name;
        for (const argument &one : undo->arguments) {
            EXPECT_TRUE(!one.required || row.find_argument(one.name)) << row.name << ": " << one.name;
        }
    }
    EXPECT_EQ(undoable, 9u);
}

TEST(Undo, TakesTheArgumentsThatItNeeds)
{
    const auto undo = undo_of(asked("ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 100 --burst 200"));
    ASSERT_TRUE(undo);
    const invocation expected = asked("ebcom path remove 02:00:00:02:00:01 --port 6");
    EXPECT_EQ(undo->row, expected.row);
    EXPECT_EQ(undo->chosen, expected.chosen);
    EXPECT_EQ(undo->given.all(), expected.given.all());
}

TEST(Undo, ReadingHasNone)
{
    EXPECT_FALSE(undo_of(asked("ebcom stats")));
}

TEST(StandingCommands, AreTakenFromTheLastOn)
{
    standing_commands standing;
    standing.note(1, asked("pcep start"));
    standing.note(2, asked("ebcom capabilities"));
    standing.note(3, asked("group add 300"));
    const auto last = standing.take_last();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->line, 3u);
    EXPECT_EQ(last->undo.row->name, "group remove");
    EXPECT_EQ(standing.take_last()->undo.row->name, "pcep stop");
    EXPECT_FALSE(standing.take_last());
}

TEST(StandingCommands, OneThatWasUndoneStandsNoMore)
{
    standing_commands standing;
    standing.note(1, asked("group add 300"));
    standing.note(2, asked("group add 301"));
    standing.note(3, asked("group remove 300"));
    EXPECT_EQ(standing.take_last()->line, 2u);
    EXPECT_FALSE(standing.take_last());
}

TEST(StandingCommands, OfTwoAlikeTheLaterIsUndoneFirst)
{
    standing_commands standing;
    standing.note(1, asked("ebcom path add 02:00:00:02:00:01 --port RLU1P"));
    standing.note(2, asked("ebcom path add 02:00:00:02:00:01 --port RLU1P"));
    standing.note(3, asked("ebcom path remove 02:00:00:02:00:01 --port RLU1P"));
    EXPECT_EQ(standing.take_last()->line, 1u);
    EXPECT_FALSE(standing.take_last());
}

} // namespace
} // namespace kelctl
