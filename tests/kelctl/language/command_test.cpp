// Looking up in a table of commands.
#include "kelctl/language/command.h"

#include "made_up_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const command_table &table = made_up_commands();

TEST(CommandTable, FindsARowByAllOfItsWords)
{
    ASSERT_NE(table.find("lamp group join"), nullptr);
    EXPECT_EQ(table.find("lamp group join")->name, "lamp group join");
    EXPECT_EQ(table.find("lamp group"), nullptr);
    EXPECT_EQ(table.find(""), nullptr);
}

TEST(CommandTable, NextWordsFollowTheRows)
{
    EXPECT_THAT(table.next_words("lamp", source::shell), ElementsAre("add", "remove", "show", "group"));
    EXPECT_THAT(table.next_words("lamp group", source::program), ElementsAre("make", "drop", "join"));
    EXPECT_THAT(table.next_words("lamp add", source::program), IsEmpty());
    EXPECT_THAT(table.next_words("nothing", source::program), IsEmpty());
    EXPECT_THAT(table.next_words("lam", source::program), IsEmpty());
}

TEST(CommandTable, PlacesAreKeptApart)
{
    EXPECT_THAT(table.next_words("", source::program), AllOf(Contains("load"), Not(Contains("leave"))));
    EXPECT_THAT(table.next_words("", source::script), AllOf(Contains("leave"), Not(Contains("load"))));
}

TEST(CommandTable, HelpIsOfARowOrOfAGroup)
{
    EXPECT_EQ(table.help_on("lamp add"), "Add a lamp");
    EXPECT_EQ(table.help_on("lamp"), "lamps and groups of them");
    EXPECT_EQ(table.help_on("lamp group"), "");
}

TEST(CommandTable, SeveralVariantsMakeAnOption)
{
    const argument *option = table.find("lamp show")->find_argument("--variant");
    ASSERT_NE(option, nullptr);
    EXPECT_EQ(option->help, "library function to call");
    EXPECT_EQ(option->otherwise, "text");
    EXPECT_EQ(option->kind.allowed, "text, record");
    EXPECT_EQ(table.find("lamp add")->find_argument("--variant"), nullptr);
}

TEST(CommandTable, WhatUsesNoNodeIsCarriedOutWhereItIsAsked)
{
    const command_table rows({{.name = "ports", .variants = {{}}, .help = "", .offline = true},
                              {.name = "time", .variants = {{}}, .help = ""},
                              {.name = "up", .variants = {{}}, .help = "", .carried_out = executor::nobody}},
                             {});
    EXPECT_EQ(rows.find("ports")->carried_out, executor::asker);
    EXPECT_EQ(rows.find("time")->carried_out, executor::node);
    EXPECT_EQ(rows.find("up")->carried_out, executor::nobody);
}

TEST(Command, AnInvocationBeginsWithTheFirstVariantAndLimits)
{
    const invocation asked = invocation_of(*table.find("lamp show"));
    EXPECT_EQ(asked.chosen->word, "text");
    EXPECT_FALSE(asked.raw);
    EXPECT_EQ(asked.line, 0u);
    const manner &shown = asked.shown;
    EXPECT_FALSE(shown.json || shown.trace || shown.brief || shown.quiet || shown.all);
}

TEST(Command, ARowSaysWhatIsSpecialOnly)
{
    const command &plain = *table.find("lamp add");
    EXPECT_FALSE(plain.failure_leaves_something);
    EXPECT_FALSE(plain.needs_accelerator);
    EXPECT_FALSE(plain.offline);
    EXPECT_FALSE(plain.carries_out_others);
}

TEST(Command, ARowTakesTheArgumentsThatItHas)
{
    arguments from;
    from.set("MAC", *parse_mac_address("02:00:00:02:00:01"));
    from.set("--port", int64_t{6});
    from.set("--rate", int64_t{7});
    arguments given;
    take_arguments(*table.find("lamp remove"), from, given);
    EXPECT_EQ(given.number<int>("--port"), 6);
    EXPECT_TRUE(given.has("MAC"));
    EXPECT_FALSE(given.has("--rate"));
}

TEST(Command, ArgumentsAreFoundByNameOrPlace)
{
    const command &join = *table.find("lamp group join");
    EXPECT_EQ(join.argument_at(1)->name, "ID");
    EXPECT_EQ(join.argument_at(2), nullptr);
    EXPECT_EQ(table.find("help")->argument_at(5)->name, "COMMAND");
    EXPECT_EQ(table.find("lamp add")->argument_at(1), nullptr);
    EXPECT_EQ(join.find_argument("--json"), &shared_options().front());
    EXPECT_EQ(join.find_argument("--port"), nullptr);
}

} // namespace
} // namespace kelctl
