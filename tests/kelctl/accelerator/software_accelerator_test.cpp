// The control functions, on a process that has them.
#include "kelctl/accelerator/software_accelerator.h"

#include "kel/kel_core_ic_ebcom.h"
#include "softnode/softnode.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(SoftwareAccelerator, AnswersWhereTheProcessRunsOnIt)
{
    EXPECT_TRUE(accelerator_snapshot().value().at("schedulers").is_array());
}

TEST(SoftwareAccelerator, TimingSettlesOnceTheTimestampThreadRuns)
{
    softnode_reset();
    ASSERT_EQ(kel_core_ic_ebcom_start(), 0u);
    EXPECT_TRUE(timing_settled(60'000));
    EXPECT_EQ(kel_core_ic_ebcom_stop(), 0u);
}

TEST(SoftwareAccelerator, TimingWithoutAThreadDoesNotSettle)
{
    softnode_reset();
    EXPECT_FALSE(timing_settled(1));
}

} // namespace
} // namespace kelctl
