// Rows of given destinations.
#include "kelctl/views/destination_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

destination to(const char *mac, const char *location, const char *note = "")
{
    return {parse_mac_address(mac).value(), location, note};
}

TEST(DestinationRows, NoneHaveNoRow)
{
    EXPECT_THAT(destination_rows({}), IsEmpty());
}

TEST(DestinationRows, ThreeConsecutiveAddressesShareOne)
{
    EXPECT_THAT(destination_rows({to("02:00:00:02:00:fe", "OB"), to("02:00:00:02:00:ff", "OB"),
                                  to("02:00:00:02:01:00", "OB"), to("02:00:00:02:01:02", "OB")}),
                ElementsAre("02:00:00:02:00:fe - 02:00:00:02:01:00 OB, 3 destinations", "02:00:00:02:01:02 OB"));
}

TEST(DestinationRows, TwoDoNot)
{
    EXPECT_THAT(destination_rows({to("02:00:00:03:00:01", "HSFP"), to("02:00:00:03:00:02", "HSFP")}),
                ElementsAre("02:00:00:03:00:01 HSFP", "02:00:00:03:00:02 HSFP"));
}

TEST(DestinationRows, RunEndsWhereTheLocationChanges)
{
    EXPECT_THAT(destination_rows({to("02:00:00:02:ff:fd", "OB"), to("02:00:00:02:ff:fe", "OB"),
                                  to("02:00:00:02:ff:ff", "OB"), to("02:00:00:03:00:00", "HSFP")}),
                ElementsAre("02:00:00:02:ff:fd - 02:00:00:02:ff:ff OB, 3 destinations", "02:00:00:03:00:00 HSFP"));
}

TEST(DestinationRows, RunEndsWhereTheNoteChanges)
{
    EXPECT_THAT(destination_rows({to("02:00:00:02:00:00", "OB", "x"), to("02:00:00:02:00:01", "OB", "x"),
                                  to("02:00:00:02:00:02", "OB", "x"), to("02:00:00:02:00:03", "OB")}),
                ElementsAre("02:00:00:02:00:00 - 02:00:00:02:00:02 OB, 3 destinations, x", "02:00:00:02:00:03 OB"));
}

TEST(DestinationRows, RunNeverReachesIntoOtherFirstOctets)
{
    EXPECT_THAT(destination_rows({to("02:00:00:ff:ff:fe", "EIOA"), to("02:00:00:ff:ff:ff", "EIOA"),
                                  to("02:00:01:00:00:00", "EIOA")}),
                ElementsAre("02:00:00:ff:ff:fe EIOA", "02:00:00:ff:ff:ff EIOA", "02:00:01:00:00:00 EIOA"));
}

} // namespace
} // namespace kelctl
