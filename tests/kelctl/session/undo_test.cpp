// Which commands undo which, and what is left to undo.
#include "kelctl/session/undo.h"

#include "script_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<uint32_t> lines_of(const undo_stack &made)
{
    std::vector<uint32_t> lines;
    for (const made_command &one : made.all())
        lines.push_back(one.asked.line);
    return lines;
}

class UndoStack : public testing::Test
{
protected:
    void note(const std::string &line)
    {
        invocation command = asked(line);
        command.line = ++line_;
        made.note(command);
    }

    undo_stack made{commands()};

private:
    uint32_t line_ = 0;
};

TEST(Undo, TakesTheArgumentsThatItNeeds)
{
    const auto undo =
        undo_of(asked("ebcom path add 02:00:00:02:00:01 --port RLU1P --rate 100 --burst 200"), commands());
    ASSERT_TRUE(undo);
    const invocation expected = asked("ebcom path remove 02:00:00:02:00:01 --port 6");
    EXPECT_EQ(undo->row, expected.row);
    EXPECT_EQ(undo->chosen, expected.chosen);
    EXPECT_EQ(undo->given, expected.given);
}

TEST(Undo, ReadingHasNone)
{
    EXPECT_FALSE(undo_of(asked("ebcom stats"), commands()));
}

TEST_F(UndoStack, NeverUsesANumberAgain)
{
    note("group add 300");
    const uint64_t first = made.all().back().number;
    note("group remove 300");
    note("group add 300");
    EXPECT_GT(made.all().back().number, first);
}

TEST_F(UndoStack, KnowsWhatOneCommandMadeInItsOrder)
{
    for (const char *line : {"pcep start", "group add 300", "group member add 300 9", "group add 30", "group add 301",
                             "group remove 30", "group add 29"})
        note(line);
    std::vector<uint32_t> lines;
    for (const made_command *one : made.made_by("group add"))
        lines.push_back(one->asked.line);
    EXPECT_THAT(lines, ElementsAre(2, 5, 7));
    EXPECT_THAT(made.made_by("pcep add"), IsEmpty());
}

TEST_F(UndoStack, HoldsWhatMakesSomethingInItsOrder)
{
    note("pcep start");
    note("ebcom capabilities");
    note("group add 300");
    EXPECT_THAT(lines_of(made), ElementsAre(1, 3));
    EXPECT_EQ(made.all().back().undo.row->name, "group remove");
    EXPECT_FALSE(made.all().back().failed);
    made.drop_last();
    EXPECT_EQ(made.all().back().undo.row->name, "pcep stop");
}

TEST_F(UndoStack, WhatWasUndoneIsGone)
{
    note("group add 300");
    note("group add 301");
    note("group remove 300");
    EXPECT_THAT(lines_of(made), ElementsAre(2));
}

TEST_F(UndoStack, OfTwoAlikeTheLaterIsUndoneFirst)
{
    note("ebcom path add 02:00:00:02:00:01 --port RLU1P");
    note("ebcom path add 02:00:00:02:00:01 --port RLU1P");
    note("ebcom path remove 02:00:00:02:00:01 --port RLU1P");
    EXPECT_THAT(lines_of(made), ElementsAre(1));
}

TEST_F(UndoStack, WhatFailedMayHaveLeftSomething)
{
    made.note_failed(asked("ebcom interface create"));
    ASSERT_EQ(made.all().size(), 1u);
    EXPECT_TRUE(made.all().back().failed);
    EXPECT_EQ(made.take_all().size(), 1u);
    EXPECT_TRUE(made.all().empty());
}

} // namespace
} // namespace kelctl
