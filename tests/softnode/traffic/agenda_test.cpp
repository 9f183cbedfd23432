/*
 * agenda_test.cpp - whose shaper opens when.
 */
#include "softnode/traffic/agenda.h"

#include "softnode/traffic/scheduler.h"
#include "traffic/instants.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

/* Owes so many octets at 8 kbit/s: a millisecond for each. */
struct Debtor : Scheduler {
    Debtor(std::uint64_t number, std::uint32_t octets) : Scheduler(Shaper({{8, 0}}, 0), 0)
    {
        serial = number;
        shaper.charge(octets, 0);
    }
};

class AgendaTest : public testing::Test
{
protected:
    Debtor first{1, 20};
    Debtor second{2, 20};
    Debtor third{3, 10};
    Agenda agenda;
};

} // namespace

TEST_F(AgendaTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(agenda.next() == never);
}

TEST_F(AgendaTest, TheEarliestIsTakenFirstAndThenTheOneThatWasAttachedFirst)
{
    for (Debtor *each : {&second, &third, &first})
        agenda.put(*each);
    EXPECT_TRUE(agenda.next() == 10 * millisecond);
    for (Debtor *each : {&third, &first, &second})
        EXPECT_EQ(&agenda.take(), each);
    EXPECT_TRUE(agenda.next() == never);
}

TEST_F(AgendaTest, AChildKnowsWhetherItStandsInIt)
{
    agenda.put(first);
    agenda.put(third);
    EXPECT_TRUE(first.awaited);
    agenda.take();
    EXPECT_FALSE(third.awaited);
    agenda.remove(first);
    EXPECT_FALSE(first.awaited);
}

TEST_F(AgendaTest, AChildCanBeTakenOff)
{
    for (Debtor *each : {&first, &second, &third})
        agenda.put(*each);
    agenda.remove(third);
    agenda.remove(third);
    EXPECT_TRUE(agenda.next() == 20 * millisecond);
    EXPECT_EQ(&agenda.take(), &first);
    EXPECT_EQ(&agenda.take(), &second);
}
