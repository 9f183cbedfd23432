// What is passed into the library, as a report tells it.
#include "kelctl/library/call_text.h"

#include "kelctl/library/library_call.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

constexpr mac_address board = {{2, 0, 0, 2, 0, 0x2a}};
constexpr kel_ebcom_path_config shaped = {{2, 0, 0, 2, 0, 0x2a}, 1, 6, 100'000, 4096, 65'536};
constexpr kel_ebcom_path_config unshaped = {{2, 0, 0, 2, 0, 0x2a}, 0, 19, 0, 0, 0};

TEST(CallText, AddressesAreInTheirUsualForm)
{
    EXPECT_EQ(argument_text("dst_mac", board), "dst_mac=02:00:00:02:00:2a");
}

TEST(CallText, HandlesHaveNoText)
{
    EXPECT_EQ(text_of_call("f", parameter::value("number", 7), parameter::handle{0x5d}), "f(number=7)");
}

TEST(CallText, ParametersAreToldByTheirMembers)
{
    constexpr kel_ebcom_global_params params = {1500, 0x88B5};
    EXPECT_EQ(argument_text("params", params), "icPortMTU=1500, etherType=0x88b5");
    EXPECT_EQ(argument_text("settings", std::array<uint8_t, 2>{1, 2}), "settings=1, 2");
}

TEST(CallText, PathsTellTheirShapingWhenTheyHaveOne)
{
    EXPECT_EQ(argument_text("config", shaped),
              "dst_mac=02:00:00:02:00:2a, port=RLU1P (6), rate=100 Mbit/s, burst=64 KiB, threshold=1 MiB");
    EXPECT_EQ(argument_text("config", unshaped), "dst_mac=02:00:00:02:00:2a, port=RLU1R (19), unshaped");
}

TEST(CallText, PcepsHaveTheirRemoteIdInThreeOctets)
{
    const kel_pcep_config pcep = {{0xEF, 0xCD, 0xAB}, 0, {2, 0, 0, 3, 0, 1}, {2, 0, 0, 2, 0, 1}, 100, 5, 6, 7, {}};
    EXPECT_EQ(argument_text("config", pcep), "remote_pcep_id=11259375, local_mac=02:00:00:03:00:01, "
                                             "remote_mac=02:00:00:02:00:01, vlan_id=100, priority=5");
}

} // namespace
} // namespace kelctl
