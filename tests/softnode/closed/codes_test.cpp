/*
 * codes_test.cpp - the two code spaces of a refusal.
 */
#include "softnode/closed/codes.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

struct Row {
    Refusal refusal;
    ork_rc driver_kit;
    std::uint32_t companion;
};

class RefusalCodes : public testing::TestWithParam<Row>
{
};

} // namespace

TEST_P(RefusalCodes, AreThoseOfTheTable)
{
    EXPECT_EQ(driver_kit_code(GetParam().refusal), GetParam().driver_kit);
    EXPECT_EQ(companion_code(GetParam().refusal), GetParam().companion);
}

INSTANTIATE_TEST_SUITE_P(All, RefusalCodes,
                         testing::Values(Row{Refusal::granted, 0, 0}, Row{Refusal::invalid, -1, 3},
                                         Row{Refusal::gone, -8, 4}, Row{Refusal::busy, -4, 5},
                                         Row{Refusal::no_device, -3, 3}, Row{Refusal::full, -9, 10},
                                         Row{Refusal::no_domain, -6, 13}, Row{Refusal::shut_down, -5, 13}));
