// Which commands undo which, and what still stands.
#include "kelctl/undo.h"

#include "kelctl/command_line.h"
#include "made_up_commands.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

invocation asked(const char *line)
{
    return parse(made_up_commands(), words_of(line), place::script);
}

TEST(Undo, TakesTheArgumentsThatItNeeds)
{
    const auto undo =
        undo_of(asked("lamp add 02:00:00:02:00:01 --port RLU1P --rate 100 --burst 200"), made_up_commands());
    ASSERT_TRUE(undo);
    const invocation expected = asked("lamp remove 02:00:00:02:00:01 --port 6");
    EXPECT_EQ(undo->row, expected.row);
    EXPECT_EQ(undo->chosen, expected.chosen);
    EXPECT_EQ(undo->given.all(), expected.given.all());
}

TEST(Undo, RowThatNamesNoneHasNone)
{
    EXPECT_FALSE(undo_of(asked("lamp show 02:00:00:02:00:01"), made_up_commands()));
}

TEST(StandingCommands, AreTakenFromTheLastOn)
{
    standing_commands standing(made_up_commands());
    standing.note(1, asked("lamp add 02:00:00:02:00:01 --port 6"));
    standing.note(2, asked("say hello"));
    standing.note(3, asked("lamp group make 300"));
    const auto last = standing.take_last();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->line, 3u);
    EXPECT_EQ(last->undo.row->name, "lamp group drop");
    EXPECT_EQ(standing.take_last()->undo.row->name, "lamp remove");
    EXPECT_FALSE(standing.take_last());
}

TEST(StandingCommands, OneThatWasUndoneStandsNoMore)
{
    standing_commands standing(made_up_commands());
    standing.note(1, asked("lamp group make 300"));
    standing.note(2, asked("lamp group make 301"));
    standing.note(3, asked("lamp group drop 300"));
    EXPECT_EQ(standing.take_last()->line, 2u);
    EXPECT_FALSE(standing.take_last());
}

TEST(StandingCommands, OfTwoAlikeTheLaterIsUndoneFirst)
{
    standing_commands standing(made_up_commands());
    standing.note(1, asked("lamp add 02:00:00:02:00:01 --port RLU1P"));
    standing.note(2, asked("lamp add 02:00:00:02:00:01 --port RLU1P"));
    standing.note(3, asked("lamp remove 02:00:00:02:00:01 --port RLU1P"));
    EXPECT_EQ(standing.take_last()->line, 1u);
    EXPECT_FALSE(standing.take_last());
}

} // namespace
} // namespace kelctl
