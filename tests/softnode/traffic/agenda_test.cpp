/*
 * agenda_test.cpp - who is due when.
 */
#include "softnode/traffic/agenda.h"

#include <gtest/gtest.h>

#include <vector>

using namespace softnode;

namespace
{

constexpr Handle first = static_cast<Handle>(1);
constexpr Handle second = static_cast<Handle>(2);
constexpr Handle third = static_cast<Handle>(3);

/* Takes everybody out who is due by an instant. */
std::vector<Handle> take_all(Agenda &agenda, Instant now)
{
    std::vector<Handle> taken;
    while (const auto entry = agenda.take_due(now))
        taken.push_back(entry->who);
    return taken;
}

} // namespace

TEST(Agenda, IsEmptyAtFirst)
{
    Agenda agenda;
    EXPECT_FALSE(agenda.next());
    EXPECT_FALSE(agenda.take_due(1000));
}

TEST(Agenda, TheEarliestIsTakenFirstAndThenTheLowestHandle)
{
    Agenda agenda;
    agenda.put(third, 10);
    agenda.put(second, 20);
    agenda.put(first, 20);
    EXPECT_EQ(agenda.next(), 10U);
    EXPECT_EQ(take_all(agenda, 20), (std::vector<Handle>{third, first, second}));
    EXPECT_FALSE(agenda.next());
}

TEST(Agenda, NobodyIsTakenBeforeTheInstant)
{
    Agenda agenda;
    agenda.put(first, 10);
    EXPECT_FALSE(agenda.take_due(9));
    const auto entry = agenda.take_due(10);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->when, 10U);
    EXPECT_EQ(entry->who, first);
}

TEST(Agenda, AHandleIsDueOnce)
{
    Agenda agenda;
    agenda.put(first, 10);
    agenda.put(first, 30);
    EXPECT_EQ(agenda.next(), 30U);
    EXPECT_EQ(take_all(agenda, 30), std::vector<Handle>{first});
}

TEST(Agenda, AHandleCanBeTakenOff)
{
    Agenda agenda;
    agenda.put(first, 10);
    agenda.put(second, 20);
    agenda.put(first, std::nullopt);
    agenda.put(third, std::nullopt);
    EXPECT_EQ(take_all(agenda, 20), std::vector<Handle>{second});
}
