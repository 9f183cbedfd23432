/*
 * attachment_test.cpp - the handles of an attachment, and what becomes of them when the node is switched off.
 */
#include "softnode/node/attachment.h"

#include <gtest/gtest.h>

using namespace softnode;

TEST(Attachment, HandsOutThreeDifferentHandles)
{
    const Attachment attachment;
    EXPECT_NE(attachment.system(), attachment.driver_kit());
    EXPECT_NE(attachment.system(), attachment.ehsfp_target());
    EXPECT_NE(attachment.driver_kit(), attachment.ehsfp_target());
}

TEST(Attachment, OnlyTheDriverKitHandleIsGoodForDriverKitCalls)
{
    const Attachment attachment;
    EXPECT_EQ(attachment.check_driver_kit(attachment.driver_kit()), Refusal::granted);
    EXPECT_EQ(attachment.check_driver_kit(attachment.system()), Refusal::invalid);
    EXPECT_EQ(attachment.check_driver_kit(attachment.ehsfp_target()), Refusal::invalid);
    EXPECT_EQ(attachment.check_driver_kit(Handle::null), Refusal::invalid);
}

TEST(Attachment, OnlyTheSystemHandleIsGoodForBindingCalls)
{
    const Attachment attachment;
    EXPECT_EQ(attachment.check_system(attachment.system()), Refusal::granted);
    EXPECT_EQ(attachment.check_system(attachment.driver_kit()), Refusal::invalid);
    EXPECT_EQ(attachment.check_system(attachment.ehsfp_target()), Refusal::invalid);
    EXPECT_EQ(attachment.check_system(Handle::null), Refusal::invalid);
}

TEST(Attachment, OnlyTheEhsfpTargetIsATarget)
{
    const Attachment attachment;
    EXPECT_EQ(attachment.check_ehsfp_target(attachment.ehsfp_target()), Refusal::granted);
    EXPECT_EQ(attachment.check_ehsfp_target(attachment.system()), Refusal::invalid);
    EXPECT_EQ(attachment.check_ehsfp_target(attachment.driver_kit()), Refusal::invalid);
    EXPECT_EQ(attachment.check_ehsfp_target(Handle::null), Refusal::invalid);
}

TEST(Attachment, HandlesOfBeforeAResetAreGone)
{
    Attachment attachment;
    const Handle driver_kit = attachment.driver_kit();
    const Handle system = attachment.system();
    const Handle target = attachment.ehsfp_target();
    attachment.reset();
    EXPECT_EQ(attachment.check_driver_kit(driver_kit), Refusal::gone);
    EXPECT_EQ(attachment.check_system(system), Refusal::gone);
    EXPECT_EQ(attachment.check_ehsfp_target(target), Refusal::gone);
    EXPECT_EQ(attachment.check_driver_kit(attachment.driver_kit()), Refusal::granted);
    EXPECT_EQ(attachment.check_system(attachment.system()), Refusal::granted);
    EXPECT_EQ(attachment.check_ehsfp_target(attachment.ehsfp_target()), Refusal::granted);
}

TEST(Attachment, AResetRenewsAllThreeHandles)
{
    Attachment attachment;
    const Handle system = attachment.system();
    const Handle target = attachment.ehsfp_target();
    attachment.reset();
    EXPECT_NE(attachment.system(), system);
    EXPECT_NE(attachment.ehsfp_target(), target);
}
