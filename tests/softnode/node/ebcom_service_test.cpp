/*
 * ebcom_service_test.cpp - the EBCOM service alone.
 */
#include "softnode/node/ebcom_service.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

using namespace softnode;

namespace
{

constexpr Mac mac{0x02, 0x00, 0x02, 0x02, 0x00, 0x01};
constexpr Handle queue = static_cast<Handle>(0x5d00000001);
constexpr Handle other_queue = static_cast<Handle>(0x5d00000002);

Mac numbered_mac(std::uint32_t number)
{
    return {2,
            0,
            0,
            static_cast<std::uint8_t>(number >> 16),
            static_cast<std::uint8_t>(number >> 8),
            static_cast<std::uint8_t>(number)};
}

} // namespace

TEST(EbcomService, HasNothingAtFirst)
{
    const EbcomService ebcom;
    EXPECT_FALSE(ebcom.globals());
    EXPECT_FALSE(ebcom.interface_device());
    EXPECT_FALSE(ebcom.timestamp_offset());
    EXPECT_TRUE(ebcom.paths().empty());
}

TEST(EbcomService, KeepsTheGlobalsSetLast)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.set_globals({1500, 0x88b5, 0x3a, 0}), Refusal::granted);
    ASSERT_EQ(ebcom.set_globals({9000, 0x88b6, 0x21, 0}), Refusal::granted);
    EXPECT_EQ(ebcom.globals()->icPortMTU, 9000);
    EXPECT_EQ(ebcom.globals()->etherType, 0x88b6);
    EXPECT_EQ(ebcom.globals()->nibbles, 0x21);
}

TEST(EbcomService, GlobalsWithSomethingInTheReservedOctetAreRefused)
{
    EbcomService ebcom;
    EXPECT_EQ(ebcom.set_globals({1500, 0x88b5, 0, 1}), Refusal::invalid);
    EXPECT_FALSE(ebcom.globals());
}

TEST(EbcomService, TheInterfaceSitsOnTheEventDevice)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
    EXPECT_EQ(ebcom.interface_device(), facts::event_device);
}

TEST(EbcomService, ASecondInterfaceIsRefused)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
    EXPECT_EQ(ebcom.create_interface(facts::event_device), Refusal::busy);
}

TEST(EbcomService, AnInterfaceOnAnUnknownDeviceIsRefused)
{
    EbcomService ebcom;
    EXPECT_EQ(ebcom.create_interface(facts::event_device + 1), Refusal::no_device);
    EXPECT_FALSE(ebcom.interface_device());
    ASSERT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
    EXPECT_EQ(ebcom.delete_interface(facts::event_device + 1), Refusal::no_device);
    EXPECT_TRUE(ebcom.interface_device());
}

TEST(EbcomService, DeletingTheInterfaceMakesRoomForAnother)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
    EXPECT_EQ(ebcom.delete_interface(facts::event_device), Refusal::granted);
    EXPECT_EQ(ebcom.delete_interface(facts::event_device), Refusal::gone);
    EXPECT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
}

TEST(EbcomService, KeepsTheTimestampOffsetSetLast)
{
    EbcomService ebcom;
    ebcom.set_timestamp_offset(160);
    ebcom.set_timestamp_offset(-5);
    EXPECT_EQ(ebcom.timestamp_offset(), -5);
}

TEST(EbcomService, KeepsAPathAsGiven)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_path(mac, {2, 9, queue}), Refusal::granted);
    const Path &path = ebcom.paths().at(mac);
    EXPECT_EQ(path.pcep_type, 2);
    EXPECT_EQ(path.eioa_port, 9);
    EXPECT_EQ(path.queue, queue);
}

TEST(EbcomService, CreatingAPathAgainChangesIt)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_path(mac, {2, 9, queue}), Refusal::granted);
    ASSERT_EQ(ebcom.create_path(mac, {1, 8, other_queue}), Refusal::granted);
    ASSERT_EQ(ebcom.paths().size(), 1U);
    EXPECT_EQ(ebcom.paths().at(mac).pcep_type, 1);
    EXPECT_EQ(ebcom.paths().at(mac).eioa_port, 8);
    EXPECT_EQ(ebcom.paths().at(mac).queue, other_queue);
}

TEST(EbcomService, APathOfAnImpossibleTypeIsRefused)
{
    EbcomService ebcom;
    EXPECT_EQ(ebcom.create_path(mac, {-1, 0, queue}), Refusal::invalid);
    EXPECT_EQ(ebcom.create_path(mac, {3, 0, queue}), Refusal::invalid);
    EXPECT_TRUE(ebcom.paths().empty());
    EXPECT_EQ(ebcom.create_path(mac, {0, 0, queue}), Refusal::granted);
}

TEST(EbcomService, ThePathAfterTheLastOneThatFitsIsRefused)
{
    EbcomService ebcom;
    for (std::uint32_t number = 0; number < facts::most_paths; ++number)
        ASSERT_EQ(ebcom.create_path(numbered_mac(number), {0, 0, queue}), Refusal::granted);
    EXPECT_EQ(ebcom.create_path(numbered_mac(facts::most_paths), {0, 0, queue}), Refusal::full);
    EXPECT_EQ(ebcom.create_path(numbered_mac(0), {1, 0, queue}), Refusal::granted) << "a known address needs no room";
}

TEST(EbcomService, APathIsDeletedByItsAddress)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_path(mac, {2, 9, queue}), Refusal::granted);
    EXPECT_EQ(ebcom.delete_path(mac), Refusal::granted);
    EXPECT_TRUE(ebcom.paths().empty());
}

TEST(EbcomService, DeletingAPathThatIsNotThereIsRefused)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.create_path(mac, {2, 9, queue}), Refusal::granted);
    EXPECT_EQ(ebcom.delete_path(numbered_mac(1)), Refusal::gone);
    ASSERT_EQ(ebcom.delete_path(mac), Refusal::granted);
    EXPECT_EQ(ebcom.delete_path(mac), Refusal::gone);
}

TEST(EbcomService, CountsFrames)
{
    EbcomService ebcom;
    ebcom.account(Fate::received, {1, 64});
    ebcom.account(Fate::sent, {2, 64});
    ebcom.account(Fate::dropped, {3, 64});
    EXPECT_EQ(ebcom.counters()[Fate::received].octets, 64U);
    EXPECT_EQ(ebcom.counters()[Fate::sent].octets, 128U);
    EXPECT_EQ(ebcom.counters()[Fate::dropped].octets, 192U);
}

TEST(EbcomService, AResetLeavesNothing)
{
    EbcomService ebcom;
    ASSERT_EQ(ebcom.set_globals({1500, 0x88b5, 0, 0}), Refusal::granted);
    ASSERT_EQ(ebcom.create_interface(facts::event_device), Refusal::granted);
    ASSERT_EQ(ebcom.create_path(mac, {2, 9, queue}), Refusal::granted);
    ebcom.set_timestamp_offset(160);
    ebcom.account(Fate::sent, {1, 64});
    ebcom.reset();
    EXPECT_EQ(ebcom.counters()[Fate::sent].frames, 0U);
    EXPECT_FALSE(ebcom.globals());
    EXPECT_FALSE(ebcom.interface_device());
    EXPECT_FALSE(ebcom.timestamp_offset());
    EXPECT_TRUE(ebcom.paths().empty());
}
