// The EBCOM interface: create and delete, and every way that each can fail.
#include "kel/kel_core_ic_ebcom.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

TEST(InterfaceCreate, CreatesOnTheEventDeviceAndFetchesItsVsi)
{
    kel_vsi_t vsi = 0;
    uint16_t out = 0xFFFF;
    EXPECT_EQ(kel_core_ic_ebcom_interface_create(&vsi, &out), 0U);
    EXPECT_EQ(vsi, scripted::vsi);
    EXPECT_EQ(out, 0);
    transcript::expect(R"(
        kel_core_ic_ebcom_interface_create:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM ork_ebcom_interface_create(eth_dev_id=7)
          > ork_ebcom_interface_create(ork, 7)
          API_CALL EBCOM kel_init_eventdev_vsi_ebcom_get()
          > kel_init_eventdev_vsi_ebcom_get()
          FN_EXIT EBCOM
    )");
}

TEST(InterfaceCreate, FailedAttachmentMakesNoDriverKitCall)
{
    scripted::fail("kel_init_attach", 3);
    uint16_t out = 0xFFFF;
    EXPECT_EQ(kel_core_ic_ebcom_interface_create(nullptr, &out), 3U);
    EXPECT_EQ(out, 0xFFFF);
    transcript::expect(R"(
        kel_core_ic_ebcom_interface_create:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach() = 3
          ~ kei_util_init_rc_str_get(3)
          init:EXCEPTION GENERAL code 3, kel_init_attach
          FN_EXIT EBCOM
    )");
}

TEST(InterfaceCreate, WithoutADeviceIdentifierNothingIsCreated)
{
    scripted::fail("kel_init_eventdev_dev_id_ebcom_get", 255);
    uint16_t out = 0xFFFF;
    EXPECT_EQ(kel_core_ic_ebcom_interface_create(nullptr, &out), 255U);
    EXPECT_EQ(out, 0xFFFF);
    transcript::expect(R"(
        kel_core_ic_ebcom_interface_create:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0) = 255
          ~ kei_util_init_rc_str_get(255)
          init:EXCEPTION GENERAL code 255, kel_init_eventdev_dev_id_ebcom_get
          FN_EXIT EBCOM
    )");
}

TEST(InterfaceCreate, DriverKitRefusalIs13WhateverItsCode)
{
    scripted::fail("ork_ebcom_interface_create", -4);
    uint16_t out = 0xFFFF;
    EXPECT_EQ(kel_core_ic_ebcom_interface_create(nullptr, &out), 13U);
    EXPECT_EQ(out, 0xFFFF);
    transcript::expect(R"(
        kel_core_ic_ebcom_interface_create:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM ork_ebcom_interface_create(eth_dev_id=7)
          > ork_ebcom_interface_create(ork, 7) = -4
          > ork_syshandle_get(0, 1)
          ~ ork_sys_status_get(-4)
          init:EXCEPTION GENERAL 0xfffffffc - status -4, ork_ebcom_interface_create
          FN_EXIT EBCOM
    )");
}

TEST(InterfaceCreate, FailedVsiLookUpLeavesTheInterfaceAndTheOutput)
{
    scripted::fail("kel_init_eventdev_vsi_ebcom_get", 4);
    kel_vsi_t vsi = 0xAAAA;
    uint16_t out = 0xFFFF;
    EXPECT_EQ(kel_core_ic_ebcom_interface_create(&vsi, &out), 4U);
    EXPECT_EQ(vsi, 0xAAAA);
    EXPECT_EQ(out, 0xFFFF);
    transcript::expect(R"(
        kel_core_ic_ebcom_interface_create:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM ork_ebcom_interface_create(eth_dev_id=7)
          > ork_ebcom_interface_create(ork, 7)
          API_CALL EBCOM kel_init_eventdev_vsi_ebcom_get()
          > kel_init_eventdev_vsi_ebcom_get() = 4
          ~ kei_util_init_rc_str_get(4)
          init:EXCEPTION GENERAL code 4, kel_init_eventdev_vsi_ebcom_get
          FN_EXIT EBCOM
    )");
}

TEST(InterfaceDelete, AsksForTheDeviceAgainAndNeedsNoCreate)
{
    EXPECT_EQ(kel_core_ic_ebcom_interface_delete(), 0U);
    transcript::expect(R"(
        kel_core_ic_ebcom_interface_delete:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM ork_ebcom_interface_delete(eth_dev_id=7)
          > ork_ebcom_interface_delete(ork, 7)
          FN_EXIT EBCOM
    )");
}

TEST(InterfaceDelete, EndsAtTheFirstCallThatFails)
{
    const struct {
        const char *call;
        int64_t result;
        uint32_t code;
        uint32_t deletions;
    } failures[] = {{"kel_init_attach", 13, 13, 0},
                    {"kel_init_eventdev_dev_id_ebcom_get", 3, 3, 0},
                    {"ork_ebcom_interface_delete", 3, 13, 1}};
    for (const auto &[call, result, code, deletions] : failures) {
        scripted::renew();
        scripted::fail(call, result);
        EXPECT_EQ(kel_core_ic_ebcom_interface_delete(), code) << call;
        EXPECT_EQ(scripted::calls_of("ork_ebcom_interface_delete"), deletions) << call;
    }
}
