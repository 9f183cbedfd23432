// Which call refused, found in records as the library words them.
#include "kelctl/library/explanation.h"

#include "platform/kei_util.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

failure with_exceptions(uint32_t code, const std::vector<std::string> &messages)
{
    failure failed = {"operation()", code, {{"FN_ENTER", "EBCOM", "operation()", "file.cpp:1"}}};
    for (const std::string &message : messages)
        failed.records.push_back({"EXCEPTION", "GENERAL", message, "file.cpp:2"});
    failed.records.push_back({"FN_EXIT", "EBCOM", "operation()", "file.cpp:1"});
    return failed;
}

TEST(Explanation, DriverKitTellsItsOwnCodeAndText)
{
    const auto why = explanation_of(
        with_exceptions(13, {"operation(): 0xfffffffc - still in use, try again, ork_ebcom_pcep_path_create"}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "driver kit");
    EXPECT_EQ(why->what, "ork_ebcom_pcep_path_create");
    EXPECT_EQ(why->code, -4);
    EXPECT_EQ(why->text, "still in use, try again");
}

TEST(Explanation, ChainOfOwnFunctionsIsFollowedToItsBeginning)
{
    const std::string limit = kei_util_init_rc_str_get(10);
    const auto why = explanation_of(with_exceptions(
        10, {"add_shaper(): " + limit + ", kel_init_qos_queue_add", "path_add(): " + limit + ", add_shaper"}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "companion library");
    EXPECT_EQ(why->what, "kel_init_qos_queue_add");
    EXPECT_EQ(why->code, 10);
    EXPECT_EQ(why->text, limit);
}

TEST(Explanation, EarlierRefusalsThatWerePutUpWithAreNotTheReason)
{
    const auto why = explanation_of(with_exceptions(
        13, {"remove(): 0xffffffff - invalid, ork_qos_scheduler_delete", "operation(): 0xfffffff7 - full, ork_bind"}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->what, "ork_bind");
    EXPECT_EQ(why->code, -9);
}

TEST(Explanation, WhatTheLibraryDoesNotAcceptIsItsOwnRefusal)
{
    const std::string range_text = kei_util_init_rc_str_get(3);
    const auto why = explanation_of(with_exceptions(3, {"get_scheduler_idx(): " + range_text + ", iell_port",
                                                        "operation(): " + range_text + ", get_scheduler_idx"}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "library itself");
    EXPECT_EQ(why->what, "iell_port");
    EXPECT_EQ(why->code, 3);
}

TEST(Explanation, SystemTellsItsResultAndErrno)
{
    const auto why = explanation_of(
        with_exceptions(13, {"operation(): pthread_create(kel-time-stamp) => rc=11, errno=Try again(11)"}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "system");
    EXPECT_EQ(why->what, "pthread_create(kel-time-stamp)");
    EXPECT_EQ(why->code, 11);
    EXPECT_EQ(why->text, "Try again(11)");
}

TEST(Explanation, CodeOfAnotherTextIsNotGuessed)
{
    const auto why = explanation_of(with_exceptions(13, {"operation(): something else, kel_fmt_end"}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->by, "formatting library");
    EXPECT_FALSE(why->code);
}

TEST(Explanation, RefusalOfNothingInParticularNamesNothing)
{
    const std::string not_empty = kei_util_init_rc_str_get(6);
    const auto why = explanation_of(with_exceptions(6, {"operation(): " + not_empty + ",  "}));
    ASSERT_TRUE(why);
    EXPECT_EQ(why->what, "");
    EXPECT_EQ(why->code, 6);
}

TEST(Explanation, NoneWithoutRecordsOrWithOthers)
{
    EXPECT_FALSE(explanation_of({"operation()", 13, {}}));
    EXPECT_FALSE(explanation_of(with_exceptions(13, {})));
    EXPECT_FALSE(explanation_of(with_exceptions(13, {"no function", "operation(): no comma"})));
}

} // namespace
} // namespace kelctl
