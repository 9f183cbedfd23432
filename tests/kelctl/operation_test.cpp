// Operations that only answer.
#include "kelctl/operation.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(Operation, SuccessIsNoFailureAndNobodyAsksForItsText)
{
    trace_log log(nullptr);
    bool asked = false;
    const auto text = [&asked] {
        asked = true;
        return "a()";
    };
    EXPECT_FALSE(run({text, [] { return 0u; }}, log));
    EXPECT_FALSE(asked);
}

TEST(Operation, FailureTellsTextAndCode)
{
    trace_log log(nullptr);
    const auto failed = run({[] { return "a(b=1)"; }, [] { return 13u; }}, log);
    ASSERT_TRUE(failed);
    EXPECT_EQ(failed->operation, "a(b=1)");
    EXPECT_EQ(failed->code, 13u);
}

TEST(Operation, NothingToDoSucceeds)
{
    trace_log log(nullptr);
    EXPECT_FALSE(run({}, log));
}

} // namespace
} // namespace kelctl
