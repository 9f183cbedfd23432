// What is passed into the library, written down.
#include "kelctl/c_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace kelctl
{
namespace
{

constexpr mac_address board = {{2, 0, 0, 2, 0, 0x2a}};
constexpr kel_ebcom_path_config shaped = {{2, 0, 0, 2, 0, 0x2a}, 1, 6, 100'000, 4096, 65'536};
constexpr kel_ebcom_path_config unshaped = {{2, 0, 0, 2, 0, 0x2a}, 0, 19, 0, 0, 0};

TEST(CText, AddressesAreArrays)
{
    EXPECT_EQ(told("dst_mac", board), "dst_mac=02:00:00:02:00:2a");
    EXPECT_EQ(c_definition("dst_mac", board), "uint8_t dst_mac[6] = {0x02, 0x00, 0x00, 0x02, 0x00, 0x2a}");
}

TEST(CText, ParametersAreToldByTheirMembers)
{
    constexpr kel_ebcom_global_params params = {1500, 0x88B5};
    EXPECT_EQ(told("params", params), "icPortMTU=1500, etherType=0x88b5");
    EXPECT_EQ(c_definition("params", params),
              "kel_ebcom_global_params params = {.icPortMTU = 1500, .etherType = 0x88b5}");
    EXPECT_EQ(told("settings", std::array<uint8_t, 2>{1, 2}), "settings=1, 2");
    EXPECT_EQ(c_definition("settings", std::array<uint8_t, 2>{1, 2}), "uint8_t settings[2] = {1, 2}");
}

TEST(CText, PathsTellTheirShapingWhenTheyHaveOne)
{
    EXPECT_EQ(told("config", shaped),
              "dst_mac=02:00:00:02:00:2a, port=RLU1P (6), rate=100 Mbit/s, burst=64 KiB, threshold=1 MiB");
    EXPECT_EQ(c_definition("config", shaped),
              "kel_ebcom_path_config config = {.dst_mac = {0x02, 0x00, 0x00, 0x02, 0x00, 0x2a}, .iell_port = 6, "
              ".shaping_enabled = 1, .shaping_rate = 100000, .buffer_threshold = 4096, .burst_size = 65536}");
    EXPECT_EQ(told("config", unshaped), "dst_mac=02:00:00:02:00:2a, port=RLU1R (19), unshaped");
    EXPECT_EQ(c_definition("config", unshaped),
              "kel_ebcom_path_config config = {.dst_mac = {0x02, 0x00, 0x00, 0x02, 0x00, 0x2a}, .iell_port = 19}");
}

TEST(CText, PcepsHaveTheirRemoteIdInThreeOctets)
{
    const kel_pcep_config pcep = {{0xEF, 0xCD, 0xAB}, 0, {2, 0, 0, 3, 0, 1}, {2, 0, 0, 2, 0, 1}, 100, 5, 6, 7, {}};
    EXPECT_EQ(told("config", pcep), "remote_pcep_id=11259375, local_mac=02:00:00:03:00:01, "
                                    "remote_mac=02:00:00:02:00:01, vlan_id=100, priority=5");
    EXPECT_EQ(c_definition("config", pcep),
              "kel_pcep_config config = {.remote_pcep_id = {0xef, 0xcd, 0xab}, "
              ".local_mac = {0x02, 0x00, 0x00, 0x03, 0x00, 0x01}, .remote_mac = {0x02, 0x00, 0x00, 0x02, 0x00, 0x01}, "
              ".vlan_id = 100, .priority = 5, .byte19 = 6, .word20 = 7}");
}

TEST(CText, SmallestNumberHasNoLiteral)
{
    EXPECT_EQ(c_number(-40), "-40");
    EXPECT_EQ(c_number(std::numeric_limits<int64_t>::min()), "INT64_MIN");
}

TEST(CText, StringsHoldAnything)
{
    EXPECT_EQ(c_string("port=6"), "\"port=6\"");
    EXPECT_EQ(c_string("\"\\?\n\xC3\xA4"), R"("\042\134\077\012\303\244")");
}

} // namespace
} // namespace kelctl
