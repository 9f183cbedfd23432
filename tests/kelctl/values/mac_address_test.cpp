// Notations, counting, locations.
#include "kelctl/values/mac_address.h"

#include "kel/kel_node_names.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

mac_address mac(std::string_view text)
{
    return parse_mac_address(text).value();
}

TEST(MacAddress, EveryNotationGivesTheSameAddress)
{
    const mac_address expected{{0x02, 0x1A, 0xB0, 0x03, 0x0C, 0xFF}};
    for (const char *text : {"02:1a:b0:03:0c:ff", "02-1A-B0-03-0C-FF", "021a.b003.0cff", "02:1A:b0:03:0C:fF"})
        EXPECT_EQ(mac(text), expected) << text;
    EXPECT_EQ(to_text(expected), "02:1a:b0:03:0c:ff");
}

TEST(MacAddress, AnythingElseIsRefused)
{
    for (const char *text : {"", "02:00:00:02:00", "02:00:00:02:00:01:", "02:00:00:02:00:0g", "2:0:0:2:0:1",
                             "02:00-00:02:00:01", "02:00:00:02:00:0/", "02:00:00:02:00:0G", "020000020001",
                             "0200.0002:0001", "02 00 00 02 00 01", ":2:00:00:02:00:01", "02:00:00:02:00:01 "})
        EXPECT_EQ(parse_mac_address(text), std::nullopt) << text;
}

TEST(MacAddress, GroupsAndNobodyAreNoStations)
{
    EXPECT_TRUE(is_station(mac("02:00:00:02:00:01")));
    EXPECT_FALSE(is_station(mac("01:00:5e:00:00:01")));
    EXPECT_FALSE(is_station(mac("ff:ff:ff:ff:ff:ff")));
    EXPECT_FALSE(is_station(mac("00:00:00:00:00:00")));
}

TEST(MacAddress, CountsInItsLastThreeOctets)
{
    EXPECT_EQ(counted_up(mac("02:00:00:02:00:fe"), 3), mac("02:00:00:02:01:01"));
    EXPECT_EQ(counted_up(mac("02:00:00:02:ff:ff"), 1), mac("02:00:00:03:00:00"));
    EXPECT_EQ(addresses_after(mac("02:00:00:ff:ff:fd")), 2u);
    EXPECT_EQ(addresses_after(mac("02:00:00:ff:ff:ff")), 0u);
}

TEST(MacAddress, LocationDependsOnTheMpId)
{
    EXPECT_EQ(location_of(mac("02:00:00:02:00:01"), 5), KEL_LOCATION_OB);
    EXPECT_EQ(location_of(mac("02:00:00:03:00:01"), 5), KEL_LOCATION_HSFP);
    EXPECT_EQ(location_of(mac("02:00:80:00:00:01"), 5), KEL_LOCATION_CPU);
    EXPECT_EQ(location_of(mac("02:00:05:00:00:01"), 5), KEL_LOCATION_CPU);
    EXPECT_EQ(location_of(mac("02:00:06:00:00:01"), 5), KEL_LOCATION_EIOA);
    EXPECT_EQ(location_of(mac("02:00:00:01:00:01"), 5), KEL_LOCATION_EIOA);
}

} // namespace
} // namespace kelctl
