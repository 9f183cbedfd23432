// What of a path depends on where its destination sits and on the port's number: type, MAC channel and names.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "path_requests.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <set>
#include <string>

using expected::with;

namespace
{

// The destination's bytes 2 and 3 tell its location.
kel_ebcom_path_config to_location(uint8_t byte2, uint8_t byte3, int32_t iell_port = 6)
{
    return {{2, 0, byte2, byte3, 0, 1}, 0, iell_port, 0, 0, 0};
}

constexpr kel_ebcom_path_config to_eioa = {{2, 0, 0, 9, 0, 1}, 0, 6, 0, 0, 0};

uint32_t add(const kel_ebcom_path_config &config)
{
    return kel_core_ic_ebcom_path_add(&config);
}

uint32_t remove(const kel_ebcom_path_config &config)
{
    return kel_core_ic_ebcom_path_rem(&config);
}

// The operation on the MAC address, up to its attachment. $1: operation, $2: MAC address, $3: port and its name.
const std::string attached = R"(
        $1:
          FN_ENTER EBCOM
          > macAddr2str($2)
          FN_PARAM EBCOM dst_mac = $2, shaping_enabled = 0, iell_port = $3, shaping_rate = 0, buffer_threshold = 0, burst_size = 0
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
)";

std::string add_attached(const std::string &mac, const std::string &port = "6 (RLU1P)")
{
    return with({"kel_core_ic_ebcom_path_add", mac, port}, attached);
}

std::string remove_attached(const std::string &mac, const std::string &port = "6 (RLU1P)")
{
    return with({"kel_core_ic_ebcom_path_rem", mac, port}, attached);
}

// The rest of an add on a port that has no queue yet, under the scheduler of its group.
std::string created(const std::string &type, const std::string &mac, const std::string &location,
                    const std::string &channel, const std::string &scheduler = "0x5008")
{
    return with({type, mac, location, channel, scheduler}, R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, $5, 7)
          FN_EXIT EBCOM
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=$1, macAddr=$2($3), eioaPort=$4, shaping_enabled=0, queue_hdl=0x9001)
          > ork_ebcom_pcep_path_create(ork, $2, type $1, eioa 0, queue 0x9001)
          FN_EXIT EBCOM
    )");
}

const std::string mac_channel_asked = R"(
        kel_ic_ebcom_port_to_mac_chan:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
)";

const std::string port_0_refused = R"(
        kel_ic_ebcom_port_to_mac_chan:
          FN_ENTER EBCOM
          ERROR EBCOM Unknown iell_port=0
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, iell_port
          FN_EXIT EBCOM
)";

// How an operation ends when the path record cannot be filled. $1: operation, $2: code.
const std::string left_without_record = R"(
          ~ kei_util_init_rc_str_get($2)
        $1:
          init:EXCEPTION GENERAL code $2, set_ork_path_attr
          FN_EXIT EBCOM
)";

std::string unsupported(const std::string &operation, const std::string &location)
{
    return with({operation, location}, R"(
        set_ork_path_attr:
          ERROR GENERAL dst_mac=02:00:00:02:00:01: Unsupported location=$2
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, Unknown location
    )") + with({operation, "3"}, left_without_record);
}

const std::string classifier_failed = R"(
          ~ kei_util_init_rc_str_get(255)
        set_ork_path_attr:
          init:EXCEPTION GENERAL code 255, kel_ic_pcep_get_location_and_type_from_branch
)";

class UnsupportedLocation : public testing::TestWithParam<uint32_t>
{
protected:
    const uint32_t location = GetParam();
    const std::string shown = std::to_string(static_cast<int32_t>(location));
};

INSTANTIATE_TEST_SUITE_P(Path, UnsupportedLocation, testing::Values(0U, 5U, 6U, UINT32_MAX));

// The name that the FN_PARAM record of a path operation shows for the port.
std::string traced_name(int32_t iell_port)
{
    transcript::forget();
    remove(to_location(0, 2, iell_port));
    const std::string record = transcript::take();
    const std::string before = "iell_port = " + std::to_string(iell_port) + " (";
    const size_t begin = record.find(before);
    if (begin == std::string::npos)
        return "";
    const size_t end = record.find("), shaping_rate", begin);
    return record.substr(begin + before.size(), end - begin - before.size());
}

void expect_name(int32_t iell_port, const std::string &name)
{
    EXPECT_EQ(traced_name(iell_port), transcript::traced() ? name : "") << iell_port;
}

} // namespace

TEST(PathDestination, HsfpIsOfType2)
{
    service_up();
    EXPECT_EQ(add(to_location(0xFF, 3)), 0U);
    transcript::expect(add_attached("02:00:ff:03:00:01") + created("2", "02:00:ff:03:00:01", "HSFP", "0 - NOT USED"));
}

TEST(PathDestination, CpuByItsTopBitIsOfType1)
{
    service_up();
    EXPECT_EQ(add(to_location(0x87, 0)), 0U);
    transcript::expect(add_attached("02:00:87:00:00:01") + created("1", "02:00:87:00:00:01", "CPU", "0 - NOT USED"));
}

TEST(PathDestination, CpuByTheOwnMpIdIsOfType1)
{
    setenv("MPID", "7", 1);
    service_up();
    EXPECT_EQ(add(to_location(7, 0)), 0U);
    transcript::expect(add_attached("02:00:07:00:00:01") + R"(
        own_mp_id_get:
          INFO PCEP MPID = 7 (7)
    )" + created("1", "02:00:07:00:00:01", "CPU", "0 - NOT USED"));
}

TEST(PathDestination, EioaIsOfType0AndUsesTheMacChannel)
{
    service_up();
    EXPECT_EQ(add(to_eioa), 0U);
    transcript::expect(add_attached("02:00:00:09:00:01") + mac_channel_asked +
                       created("0", "02:00:00:09:00:01", "EIOA", "0"));
}

TEST(PathDestination, EioaIsRemovedWithItsMacChannel)
{
    service_up();
    EXPECT_EQ(add(to_eioa), 0U);
    transcript::forget();
    EXPECT_EQ(remove(to_eioa), 0U);
    transcript::expect(remove_attached("02:00:00:09:00:01") + mac_channel_asked + R"(
        kel_ic_ebcom_remove_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_qos_queue_rem()
          > kel_init_qos_queue_rem(0x9001)
          FN_EXIT EBCOM
        kel_core_ic_ebcom_path_rem:
          API_CALL EBCOM ork_ebcom_pcep_path_delete(pcepType=0, macAddr=02:00:00:09:00:01(EIOA), eioaPort=0, shaping_enabled=0, queue_hdl=(nil))
          > ork_ebcom_pcep_path_delete(ork, 02:00:00:09:00:01, type 0, eioa 0, queue (nil))
          FN_EXIT EBCOM
    )");
}

TEST(PathDestination, EioaOnPort0CannotBeAdded)
{
    service_up();
    EXPECT_EQ(add(to_location(0, 9, 0)), 3U);
    transcript::expect(add_attached("02:00:00:09:00:01", "0 (NONE)") + port_0_refused + R"(
          ~ kei_util_init_rc_str_get(3)
        set_ork_path_attr:
          init:EXCEPTION GENERAL code 3, kel_ic_ebcom_port_to_mac_chan
    )" + with({"kel_core_ic_ebcom_path_add", "3"}, left_without_record));
}

TEST(PathDestination, EioaOnPort0CannotBeRemoved)
{
    service_up();
    EXPECT_EQ(add(to_eioa), 0U);
    transcript::forget();
    EXPECT_EQ(remove(to_location(0, 9, 0)), 3U);
    transcript::expect(remove_attached("02:00:00:09:00:01", "0 (NONE)") + port_0_refused + R"(
          ~ kei_util_init_rc_str_get(3)
        set_ork_path_attr:
          init:EXCEPTION GENERAL code 3, kel_ic_ebcom_port_to_mac_chan
    )" + with({"kel_core_ic_ebcom_path_rem", "3"}, left_without_record));
}

TEST(PathDestination, OtherLocationsAreReachedFromPort0)
{
    service_up();
    EXPECT_EQ(add(to_location(0, 2, 0)), 0U);
    transcript::expect(add_attached("02:00:00:02:00:01", "0 (NONE)") +
                       created("2", "02:00:00:02:00:01", "OB", "0 - NOT USED", "0x500c"));
}

TEST_P(UnsupportedLocation, CannotBeAdded)
{
    service_up();
    scripted::classify_as(location);
    EXPECT_EQ(add(to_ob), 3U);
    transcript::expect(add_attached("02:00:00:02:00:01") + unsupported("kel_core_ic_ebcom_path_add", shown));
}

TEST_P(UnsupportedLocation, CannotBeRemoved)
{
    service_up();
    EXPECT_EQ(add(to_ob), 0U);
    transcript::forget();
    scripted::classify_as(location);
    EXPECT_EQ(remove(to_ob), 3U);
    transcript::expect(remove_attached("02:00:00:02:00:01") + unsupported("kel_core_ic_ebcom_path_rem", shown));
}

TEST(PathDestination, TypeFollowsFromTheLocationAlone)
{
    service_up();
    scripted::classify_as(1);
    EXPECT_EQ(add(to_ob), 0U);
    transcript::expect(add_attached("02:00:00:02:00:01") + created("1", "02:00:00:02:00:01", "CPU", "0 - NOT USED"));
}

TEST(PathDestination, ClassifierWritesTheTypeIntoTheDriverKitsRecord)
{
    service_up();
    EXPECT_EQ(add(to_ob), 0U);
    const auto *path = static_cast<const char *>(scripted::last_path_place());
    EXPECT_EQ(scripted::last_type_place(), path + offsetof(ork_ebcom_pcep_path, pcepType));
}

TEST(PathDestination, CallsAreAnnouncedWithAFormatOfTheirOwn)
{
    service_up();
    EXPECT_EQ(add(to_ob), 0U);
    EXPECT_EQ(remove(to_ob), 0U);
    const std::set<std::string> formats = scripted::formats();
    for (const std::string call : {"ork_ebcom_pcep_path_create", "ork_ebcom_pcep_path_delete"}) {
        const std::string format =
            call + "(pcepType=%d, macAddr=%s(%s), eioaPort=%d%s, shaping_enabled=%d, queue_hdl=%p)";
        EXPECT_EQ(formats.contains(format), transcript::traced()) << format;
    }
}

TEST(PathDestination, FailedClassifierPassesItsCodeToAnAdd)
{
    service_up();
    scripted::fail("kel_ic_pcep_get_location_and_type_from_branch", 255);
    EXPECT_EQ(add(to_ob), 255U);
    transcript::expect(add_attached("02:00:00:02:00:01") + classifier_failed +
                       with({"kel_core_ic_ebcom_path_add", "255"}, left_without_record));
}

TEST(PathDestination, FailedClassifierPassesItsCodeToARemoval)
{
    service_up();
    EXPECT_EQ(add(to_ob), 0U);
    transcript::forget();
    scripted::fail("kel_ic_pcep_get_location_and_type_from_branch", 255);
    EXPECT_EQ(remove(to_ob), 255U);
    transcript::expect(remove_attached("02:00:00:02:00:01") + classifier_failed +
                       with({"kel_core_ic_ebcom_path_rem", "255"}, left_without_record));
}

TEST(PathDestination, FailureToFillTheRecordKeepsCountAndReference)
{
    service_up();
    EXPECT_EQ(add(to_ob), 0U);
    scripted::fail("kel_ic_pcep_get_location_and_type_from_branch", 1);
    EXPECT_EQ(remove(to_ob), 1U);
    EXPECT_EQ(remove(to_ob), 0U);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_path_delete"), 1U);
}

TEST(PortToMacChan, Port0IsRefused)
{
    uint8_t channel = 0xA5;
    EXPECT_EQ(kel_ic_ebcom_port_to_mac_chan(0, &channel), 3U);
    EXPECT_EQ(channel, 0xA5);
    transcript::expect(port_0_refused);
}

TEST(PortToMacChan, EveryOtherPortIsAcceptedAndTheOutputLeft)
{
    for (const int32_t port : {6, 1, 14, 42, 50, 51, -1, INT32_MAX, INT32_MIN}) {
        uint8_t channel = 0xA5;
        EXPECT_EQ(kel_ic_ebcom_port_to_mac_chan(port, &channel), 0U) << port;
        EXPECT_EQ(channel, 0xA5) << port;
        transcript::expect(mac_channel_asked);
    }
}

TEST(PortName, EveryPortBearsItsName)
{
    const char *const names[] = {
        "NONE",      "HERON",     "KESP1",    "KESP2",    "KESQ1",    "KESQ2", "RLU1P", "RLU1Q",     "RLU2P",
        "RLU2Q",     "RLU3P",     "RLU3Q",    "RLU4P",    "RLU4Q",    "DEBUG", "MZP",   "MZQ",       "MZR",
        "MZS",       "RLU1R",     "RLU1S",    "RLU1T",    "RLU1U",    "RLU1V", "RLU1W", "RLU2R",     "RLU2S",
        "RLU2T",     "RLU2U",     "RLU2V",    "RLU2W",    "RLU3R",    "RLU3S", "RLU3T", "RLU3U",     "RLU3V",
        "RLU3W",     "RLU4R",     "RLU4S",    "RLU4T",    "RLU4U",    "RLU4V", "RLU4W", "MZ-KES_P1", "MZ-KES_P2",
        "MZ-KES_P3", "MZ-KES_P4", "MZ-KES_Q", "MZ-KES_R", "MZ-KES_S", "MZ_T"};
    int32_t iell_port = 0;
    for (const char *name : names)
        expect_name(iell_port++, name);
    EXPECT_EQ(iell_port, 51);
}

TEST(PortName, PortsOutsideTheTableAreUnknown)
{
    for (const int32_t port : {-1, 51, 52, INT32_MIN, INT32_MAX})
        expect_name(port, "UNKNOWN");
}

TEST(PortName, UnknownPortsHaveNoQos)
{
    service_up();
    for (const int32_t port : {-1, 51, INT32_MIN, INT32_MAX})
        EXPECT_EQ(add(to_location(0, 2, port)), 3U) << port;
    EXPECT_EQ(scripted::calls_of("kel_init_qos_queue_add"), 0U);
    EXPECT_EQ(scripted::calls_of("ork_ebcom_pcep_path_create"), 0U);
}
