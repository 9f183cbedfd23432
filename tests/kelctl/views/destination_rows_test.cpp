// Rows of given destinations.
#include "kelctl/views/destination_rows.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

destination to(const char *mac, const char *location, const char *note = "")
{
    return {parse_mac_address(mac).value(), location, note};
}

TEST(DestinationRows, NoneHaveNoRow)
{
    EXPECT_EQ(destination_rows({}), "");
}

TEST(DestinationRows, ThreeConsecutiveAddressesShareOne)
{
    EXPECT_EQ(destination_rows({to("02:00:00:02:00:fe", "OB"), to("02:00:00:02:00:ff", "OB"),
                                to("02:00:00:02:01:00", "OB"), to("02:00:00:02:01:02", "OB")}),
              "      02:00:00:02:00:fe - 02:00:00:02:01:00  OB   3 destinations\n"
              "      02:00:00:02:01:02                      OB\n");
}

TEST(DestinationRows, TwoDoNot)
{
    EXPECT_EQ(destination_rows({to("02:00:00:03:00:01", "HSFP"), to("02:00:00:03:00:02", "HSFP")}),
              "      02:00:00:03:00:01                      HSFP\n"
              "      02:00:00:03:00:02                      HSFP\n");
}

TEST(DestinationRows, RunEndsWhereTheLocationChanges)
{
    EXPECT_EQ(destination_rows({to("02:00:00:02:ff:fd", "OB"), to("02:00:00:02:ff:fe", "OB"),
                                to("02:00:00:02:ff:ff", "OB"), to("02:00:00:03:00:00", "HSFP")}),
              "      02:00:00:02:ff:fd - 02:00:00:02:ff:ff  OB   3 destinations\n"
              "      02:00:00:03:00:00                      HSFP\n");
}

TEST(DestinationRows, RunEndsWhereTheNoteChanges)
{
    EXPECT_EQ(destination_rows({to("02:00:00:02:00:00", "OB", "x"), to("02:00:00:02:00:01", "OB", "x"),
                                to("02:00:00:02:00:02", "OB", "x"), to("02:00:00:02:00:03", "OB")}),
              "      02:00:00:02:00:00 - 02:00:00:02:00:02  OB   3, x\n"
              "      02:00:00:02:00:03                      OB\n");
}

TEST(DestinationRows, RunNeverReachesIntoOtherFirstOctets)
{
    EXPECT_EQ(destination_rows(
                  {to("02:00:00:ff:ff:fe", "EIOA"), to("02:00:00:ff:ff:ff", "EIOA"), to("02:00:01:00:00:00", "EIOA")}),
              "      02:00:00:ff:ff:fe                      EIOA\n"
              "      02:00:00:ff:ff:ff                      EIOA\n"
              "      02:00:01:00:00:00                      EIOA\n");
}

} // namespace
} // namespace kelctl
