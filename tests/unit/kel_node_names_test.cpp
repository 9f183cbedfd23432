// The names of IC ports and locations, and the records that print them.
#include "expected.h"
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_node_names.h"
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace
{

struct numbered_name {
    int32_t number;
    const char *name;
};

// What is wired to which port never changes, so neither may a row.
constexpr numbered_name branches[] = {
    {0, "NONE"},      {1, "HERON"},      {2, "KESP1"},      {3, "KESP2"},      {4, "KESQ1"},      {5, "KESQ2"},
    {6, "RLU1P"},     {7, "RLU1Q"},      {8, "RLU2P"},      {9, "RLU2Q"},      {10, "RLU3P"},     {11, "RLU3Q"},
    {12, "RLU4P"},    {13, "RLU4Q"},     {14, "DEBUG"},     {15, "MZP"},       {16, "MZQ"},       {17, "MZR"},
    {18, "MZS"},      {19, "RLU1R"},     {20, "RLU1S"},     {21, "RLU1T"},     {22, "RLU1U"},     {23, "RLU1V"},
    {24, "RLU1W"},    {25, "RLU2R"},     {26, "RLU2S"},     {27, "RLU2T"},     {28, "RLU2U"},     {29, "RLU2V"},
    {30, "RLU2W"},    {31, "RLU3R"},     {32, "RLU3S"},     {33, "RLU3T"},     {34, "RLU3U"},     {35, "RLU3V"},
    {36, "RLU3W"},    {37, "RLU4R"},     {38, "RLU4S"},     {39, "RLU4T"},     {40, "RLU4U"},     {41, "RLU4V"},
    {42, "RLU4W"},    {43, "MZ-KES_P1"}, {44, "MZ-KES_P2"}, {45, "MZ-KES_P3"}, {46, "MZ-KES_P4"}, {47, "MZ-KES_Q"},
    {48, "MZ-KES_R"}, {49, "MZ-KES_S"},  {50, "MZ_T"},
};

constexpr numbered_name no_branches[] = {{-1, "UNKNOWN"},  {51, "UNKNOWN"},        {52, "UNKNOWN"},
                                         {256, "UNKNOWN"}, {INT32_MIN, "UNKNOWN"}, {INT32_MAX, "UNKNOWN"}};

constexpr const char *locations[] = {"NONE", "CPU", "OB", "HSFP", "EIOA", "MULTICAST"};

// A path add on this port that ends at its attachment, just after it has printed the port's name.
void expect_printed(const numbered_name &branch)
{
    const kel_ebcom_path_config config = unshaped(branch.number);
    scripted::fail("kel_init_attach", 1);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&config), 1U);
    transcript::expect(expected::with({std::to_string(branch.number), branch.name}, R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str(02:00:00:02:00:01)
          FN_PARAM EBCOM dst_mac = 02:00:00:02:00:01, shaping_enabled = 0, iell_port = $1 ($2), shaping_rate = 0, buffer_threshold = 0, burst_size = 0
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 1
          ~ kei_util_init_rc_str_get(1)
          init:EXCEPTION GENERAL code 1, kel_init_attach
          FN_EXIT EBCOM
    )"));
}

// A path add to a destination in this location, which the driver kit refuses once the location's name is printed.
void expect_printed(const std::string &mac_text, const mac_address &mac, const std::string &location,
                    const std::string &type)
{
    const bool is_eioa = location == "EIOA";
    const kel_ebcom_path_config config = unshaped(6, mac);
    scripted::fail("ork_ebcom_pcep_path_create", -1);
    EXPECT_EQ(kel_core_ic_ebcom_path_add(&config), 13U);
    transcript::expect(expected::with({mac_text, location, type, is_eioa ? "" : " - NOT USED",
                                       is_eioa ? R"(
        kel_ic_ebcom_port_to_mac_chan:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
    )"
                                               : ""},
                                      R"(
        kel_core_ic_ebcom_path_add:
          FN_ENTER EBCOM
          > macAddr2str($1)
          FN_PARAM EBCOM dst_mac = $1, shaping_enabled = 0, iell_port = 6 (RLU1P), shaping_rate = 0, buffer_threshold = 0, burst_size = 0
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
        $5
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, (nil), 7)
          FN_EXIT EBCOM
        kel_core_ic_ebcom_path_add:
          API_CALL EBCOM ork_ebcom_pcep_path_create(pcepType=$3, macAddr=$1($2), eioaPort=0$4, shaping_enabled=0, queue_hdl=0x9001)
          > ork_ebcom_pcep_path_create(ork, $1, type $3, eioa 0, queue 0x9001) = -1
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-1)
          init:EXCEPTION GENERAL 0xffffffff - status -1, ork_ebcom_pcep_path_create
          FN_EXIT EBCOM
    )"));
}

} // namespace

TEST(BranchNames, AreInTheOrderOfThePorts)
{
    ASSERT_EQ(std::size(branches), 51U);
    for (const auto &[port, name] : branches)
        EXPECT_STREQ(kel_branch_name(port), name) << port;
}

TEST(BranchNames, OutsideTheTableAreUnknown)
{
    for (const auto &[port, name] : no_branches)
        EXPECT_STREQ(kel_branch_name(port), name) << port;
}

TEST(BranchNames, ArePrintedWithThePortOfAPath)
{
    for (const numbered_name &branch : branches)
        expect_printed(branch);
}

TEST(BranchNames, OfPortsOutsideTheTableArePrintedAsUnknown)
{
    for (const numbered_name &branch : no_branches)
        expect_printed(branch);
}

TEST(LocationNames, AreInTheOrderOfTheirCodes)
{
    for (uint32_t location = 0; location < std::size(locations); ++location)
        EXPECT_STREQ(kel_location_name(location), locations[location]) << location;
}

TEST(LocationNames, OutsideTheTableAreUnknown)
{
    for (const uint32_t location : {6U, 7U, 256U, UINT32_MAX})
        EXPECT_STREQ(kel_location_name(location), "UNKNOWN") << location;
}

TEST(LocationNames, CpuIsPrintedWithAPath)
{
    expect_printed("02:00:80:00:00:01", {2, 0, 0x80, 0, 0, 1}, "CPU", "1");
}

TEST(LocationNames, ObIsPrintedWithAPath)
{
    expect_printed("02:00:00:02:00:01", {2, 0, 0, 2, 0, 1}, "OB", "2");
}

TEST(LocationNames, HsfpIsPrintedWithAPath)
{
    expect_printed("02:00:00:03:00:01", {2, 0, 0, 3, 0, 1}, "HSFP", "2");
}

TEST(LocationNames, EioaIsPrintedWithAPath)
{
    expect_printed("02:00:00:04:00:01", {2, 0, 0, 4, 0, 1}, "EIOA", "0");
}
