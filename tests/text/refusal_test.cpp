// Messages as the library words them.
#include "text/refusal.h"

#include <gtest/gtest.h>

namespace text
{
namespace
{

TEST(Refusal, MessageIsAFunctionAndWhatItTells)
{
    const auto [function, detail] = parts_of("create_scheduler(): ork_qos_scheduler_create(rootId=20)");
    EXPECT_EQ(function, "create_scheduler");
    EXPECT_EQ(detail, "ork_qos_scheduler_create(rootId=20)");
    EXPECT_EQ(parts_of("kel_core_ic_ebcom_stop()").function, "");
}

TEST(Refusal, DriverKitTellsItsCode)
{
    const auto why = refusal_in("0xfffffffc - still in use, try again, ork_bind");
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "driver kit");
    EXPECT_EQ(why->what, "ork_bind");
    EXPECT_EQ(why->code, -4);
    EXPECT_EQ(why->text, "still in use, try again");
}

TEST(Refusal, TimingUnitNamesItsCode)
{
    const auto named = refusal_in("vorn_tu_init returned AGAIN(try again)");
    ASSERT_TRUE(named);
    EXPECT_EQ(named->by, "timing unit");
    EXPECT_EQ(named->what, "vorn_tu_init");
    EXPECT_EQ(named->code, -4);
    EXPECT_EQ(named->text, "AGAIN(try again)");
    EXPECT_EQ(refusal_in("vorn_tu_wait_event returned UNK_RET_VAL(-12)")->code, -12);
    EXPECT_FALSE(refusal_in("vorn_tu_wait_event returned something")->code);
}

TEST(Refusal, CompanionLibraryTellsItsTextOnly)
{
    const auto why = refusal_in("limit reached, kel_init_qos_queue_add");
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "companion library");
    EXPECT_FALSE(why->code);
    EXPECT_EQ(why->text, "limit reached");
}

TEST(Refusal, SystemTellsItsResultAndErrno)
{
    const auto why = refusal_in("pthread_create(kel-time-stamp) => rc=-1, errno=Try again(11)");
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "system");
    EXPECT_EQ(why->what, "pthread_create(kel-time-stamp)");
    EXPECT_EQ(why->code, -1);
    EXPECT_EQ(why->text, "Try again(11)");
}

TEST(Refusal, WhatIsNotAsTheLibraryWordsItHasNoCode)
{
    EXPECT_EQ(refusal_in("fprintf => rc=some")->code, 0);
    EXPECT_EQ(refusal_in("fprintf => rc=-1")->text, "");
    EXPECT_EQ(refusal_in("vorn_tu_wait_event returned UNK_RET_VAL(x)")->code, std::nullopt);
    for (const char *detail :
         {"0xfffffffc, ork_bind", "0xfffffffc0 - no, ork_bind", "0xfg - no, ork_bind", "0x - no, ork_bind"})
        EXPECT_EQ(refusal_in(detail)->code, std::nullopt) << detail;
}

TEST(Refusal, OtherMessagesRefuseNothing)
{
    EXPECT_FALSE(refusal_in("kel_init_attach()"));
    EXPECT_FALSE(refusal_in(""));
}

} // namespace
} // namespace text
