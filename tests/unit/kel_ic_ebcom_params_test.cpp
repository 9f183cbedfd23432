// The service-wide parameters and the capabilities.
#include "kel/kel_core_ic_ebcom.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <vector>

using scripted::octets;

namespace
{

constexpr kel_ebcom_global_params usual_params = {1500, 0x88B5};
constexpr uint8_t usual_settings[2] = {1, 2};

octets record_for(const kel_ebcom_global_params &params, uint8_t first, uint8_t second)
{
    const uint8_t settings[2] = {first, second};
    EXPECT_EQ(kel_core_ic_ebcom_global_param_set(&params, settings), 0U);
    return scripted::record_of("ork_ebcom_global_config_set");
}

void expect_limits()
{
    kel_ebcom_capabilities limits = {0xAAAAAAAA, 0xAAAAAAAA, 0xAAAAAAAA, 0xAAAAAAAA};
    EXPECT_EQ(kel_core_ic_ebcom_capabilities_get(&limits), 0U);
    EXPECT_EQ(limits.max_burst_size, 1048575U);
    EXPECT_EQ(limits.max_pcep_id, 511U);
    EXPECT_EQ(limits.max_multicast_groups, 30U);
    EXPECT_EQ(limits.max_multicast_members, 16U);
}

} // namespace

TEST(GlobalParams, MtuAndEtherTypeAreTracedAndHandedOver)
{
    scripted::soil_stack();
    EXPECT_EQ(kel_core_ic_ebcom_global_param_set(&usual_params, usual_settings), 0U);
    EXPECT_EQ(scripted::record_of("ork_ebcom_global_config_set"), (octets{0xDC, 0x05, 0xB5, 0x88, 0x21, 0}));
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_ebcom_global_config_set(icPortMTU=1500, etherType=0x88b5)
          > ork_ebcom_global_config_set(ork)
          FN_EXIT EBCOM
    )");
}

TEST(GlobalParams, MtuAbove65535IsCutTo16Bits)
{
    EXPECT_EQ(record_for({70000, 0x88B5}, 1, 2), (octets{0x70, 0x11, 0xB5, 0x88, 0x21, 0}));
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_ebcom_global_config_set(icPortMTU=4464, etherType=0x88b5)
          > ork_ebcom_global_config_set(ork)
          FN_EXIT EBCOM
    )");
}

TEST(GlobalParams, EtherTypeAbove65535IsCutTo16BitsAndTracedWithFourDigits)
{
    EXPECT_EQ(record_for({0xFFFF, 0xABC0005}, 0, 0), (octets{0xFF, 0xFF, 0x05, 0x00, 0, 0}));
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_ebcom_global_config_set(icPortMTU=65535, etherType=0x0005)
          > ork_ebcom_global_config_set(ork)
          FN_EXIT EBCOM
    )");
}

TEST(GlobalParams, SettingsShareOneOctetAndTheirUpperHalvesFallOff)
{
    const octets start = {0xDC, 0x05, 0xB5, 0x88};
    const struct {
        uint8_t first;
        uint8_t second;
        uint8_t packed;
    } rows[] = {{0x1A, 0x23, 0x3A}, {0, 0, 0}, {0xFF, 0xFF, 0xFF}, {0xF0, 0xF0, 0}, {0x0F, 0, 0x0F}, {0, 0x0F, 0xF0}};
    for (const auto &row : rows) {
        octets expected = start;
        expected.insert(expected.end(), {row.packed, 0});
        EXPECT_EQ(record_for(usual_params, row.first, row.second), expected) << +row.first << ", " << +row.second;
    }
}

TEST(GlobalParams, FailedAttachmentMakesNoDriverKitCall)
{
    scripted::fail("kel_init_attach", 255);
    EXPECT_EQ(kel_core_ic_ebcom_global_param_set(&usual_params, usual_settings), 255U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_attach
          FN_EXIT EBCOM
    )");
}

TEST(GlobalParams, DriverKitRefusalIs13WhateverItsCode)
{
    scripted::fail("ork_ebcom_global_config_set", -12);
    EXPECT_EQ(kel_core_ic_ebcom_global_param_set(&usual_params, usual_settings), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_ebcom_global_config_set(icPortMTU=1500, etherType=0x88b5)
          > ork_ebcom_global_config_set(ork) = -12
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-12)
          init:EXCEPTION GENERAL 0xfffffff4 - status -12, ork_ebcom_global_config_set
          FN_EXIT EBCOM
    )");
}

TEST(GlobalParams, AnswerOfTheSystemHandleLookUpIsIgnored)
{
    scripted::fail("ork_ebcom_global_config_set", 3);
    scripted::fail("ork_syshandle_get", -4);
    EXPECT_EQ(kel_core_ic_ebcom_global_param_set(&usual_params, usual_settings), 13U);
    transcript::expect(R"(
        kel_core_ic_ebcom_global_param_set:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_ebcom_global_config_set(icPortMTU=1500, etherType=0x88b5)
          > ork_ebcom_global_config_set(ork) = 3
          > ork_syshandle_get(0, 1) = -4
          ~ ork_sys_status_get(3)
          init:EXCEPTION GENERAL 0x3 - status 3, ork_ebcom_global_config_set
          FN_EXIT EBCOM
    )");
}

TEST(Capabilities, AreTheSameOnEveryCallAndTraceNothing)
{
    expect_limits();
    expect_limits();
    EXPECT_EQ(transcript::take(), "");
}

TEST(Capabilities, AreTheSameBeforeAndAfterAStart)
{
    expect_limits();
    EXPECT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::forget();
    expect_limits();
    EXPECT_EQ(transcript::take(), "");
}
