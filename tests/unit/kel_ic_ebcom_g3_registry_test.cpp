// The QoS handle registry, through the operations that use it: which scheduler and queue belong to a port, which
// destinations to a queue, and how a destination is found again.
#include "expected.h"
#include "script.h"
#include "scripted_platform.h"
#include "shaper_requests.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

namespace
{

bool has_qos(int32_t iell_port)
{
    return std::ranges::find(qos_ports, iell_port, &qos_port::iell_port) != std::end(qos_ports);
}

// Everything around the ports with QoS, the extremes, and numbers that are such a port once their upper bits are lost.
std::vector<int32_t> ports_without_qos()
{
    std::vector<int32_t> ports = {INT32_MIN, INT32_MIN + 6, -250,  -256,      256,        256 + 6,
                                  256 + 42,  65536,         65542, 65536 + 8, 0x01000006, INT32_MAX};
    for (int32_t port = -3; port <= 60; ++port)
        if (!has_qos(port))
            ports.push_back(port);
    return ports;
}

std::string unknown_port_refused(const std::string &operation, const std::string &registry_step)
{
    return expected::with({operation, registry_step}, R"(
        $1:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(3)
        get_scheduler_idx:
          init:EXCEPTION GENERAL code 3, iell_port
          ~ kei_util_init_rc_str_get(3)
        $2:
          init:EXCEPTION GENERAL code 3, get_scheduler_idx
          ~ kei_util_init_rc_str_get(3)
        $1:
          init:EXCEPTION GENERAL code 3, $2
          FN_EXIT EBCOM
    )");
}

} // namespace

TEST(PortMapping, EachPortWithQosHasAQueueOfItsOwnUnderItsGroupsScheduler)
{
    scheduler_tree_up();
    for (const auto &[port, group] : qos_ports) {
        SCOPED_TRACE(port);
        EXPECT_EQ(add(unshaped(port)), 0U);
        transcript::expect(expected::with({scripted::text("%p", group_scheduler(group))}, R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, $1, 7)
          FN_EXIT EBCOM
        )"));
    }
}

TEST(PortMapping, ADestinationOnAllPortsIsFoundGroupByGroupAndQueueByQueue)
{
    scheduler_tree_up();
    for (auto each = std::rbegin(qos_ports); each != std::rend(qos_ports); ++each)
        EXPECT_EQ(add(unshaped(each->iell_port)), 0U);

    auto queue = static_cast<uint32_t>(std::size(qos_ports)); // the last one created is found first
    for (const auto &[port, group] : qos_ports) {
        SCOPED_TRACE(port);
        EXPECT_EQ(queue_of(peer), scripted::queue(queue--));
        EXPECT_EQ(scheduler_of(peer), group_scheduler(group));
        EXPECT_EQ(remove(unshaped(port)), 0U);
    }
    EXPECT_EQ(queue_of(peer), untouched);
}

TEST(PortMapping, EveryOtherPortIsUnknown)
{
    scheduler_tree_up();
    for (const int32_t port : ports_without_qos()) {
        SCOPED_TRACE(port);
        EXPECT_EQ(add(unshaped(port)), 3U);
        transcript::expect(unknown_port_refused("kel_ic_ebcom_add_shaper", "ebcom_qos_handles_get"));
        EXPECT_EQ(remove(unshaped(port)), 3U);
        transcript::expect(unknown_port_refused("kel_ic_ebcom_remove_shaper", "remove_dst_mac"));
    }
    EXPECT_EQ(queue_of(peer), untouched);
}

TEST(PortMapping, PortZeroIsAloneUnderTheFifthScheduler)
{
    scheduler_tree_up();
    EXPECT_EQ(add(unshaped(0)), 0U);
    EXPECT_EQ(scheduler_of(peer), scripted::scheduler(12));
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

TEST(Registry, PortWithNothingCreatedHasNullHandles)
{
    EXPECT_EQ(add(unshaped(6)), 0U);
    transcript::expect(R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
          API_CALL EBCOM kel_init_qos_queue_add()
          > kel_init_qos_queue_add({1, 0, 5120000, 0}, 5, (nil), 7)
          FN_EXIT EBCOM
    )");
    EXPECT_EQ(scheduler_of(peer), nullptr);
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

TEST(HandleLookUp, FindsTheQueueWithoutAnAttachment)
{
    scheduler_tree_up();
    add(unshaped(25));
    transcript::forget();
    void *queue = nullptr;
    EXPECT_EQ(kel_ic_ebcom_queue_handle_get(peer.data(), &queue), 0U);
    EXPECT_EQ(queue, scripted::queue(1));
    transcript::expect(R"(
        kel_ic_ebcom_queue_handle_get:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
    )");
}

TEST(HandleLookUp, FindsTheSchedulerWithoutAnAttachment)
{
    scheduler_tree_up();
    add(unshaped(25));
    transcript::forget();
    void *scheduler = nullptr;
    EXPECT_EQ(kel_ic_ebcom_scheduler_handle_get(peer.data(), &scheduler), 0U);
    EXPECT_EQ(scheduler, scripted::scheduler(9));
    transcript::expect(R"(
        kel_ic_ebcom_scheduler_handle_get:
          FN_ENTER EBCOM
          FN_EXIT EBCOM
    )");
}

TEST(HandleLookUp, QueueOfAnUnknownDestinationIs4AndTheHandleUntouched)
{
    scheduler_tree_up();
    void *queue = untouched;
    EXPECT_EQ(kel_ic_ebcom_queue_handle_get(peer.data(), &queue), 4U);
    EXPECT_EQ(queue, untouched);
    transcript::expect(R"(
        kel_ic_ebcom_queue_handle_get:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(4)
        find_handles_by_dst_mac:
          init:EXCEPTION GENERAL code 4, dst_mac
          ~ kei_util_init_rc_str_get(4)
        kel_ic_ebcom_queue_handle_get:
          init:EXCEPTION GENERAL code 4, find_handles_by_dst_mac
          FN_EXIT EBCOM
    )");
}

TEST(HandleLookUp, SchedulerOfAnUnknownDestinationIs4AndTheHandleUntouched)
{
    scheduler_tree_up();
    void *scheduler = untouched;
    EXPECT_EQ(kel_ic_ebcom_scheduler_handle_get(peer.data(), &scheduler), 4U);
    EXPECT_EQ(scheduler, untouched);
    transcript::expect(R"(
        kel_ic_ebcom_scheduler_handle_get:
          FN_ENTER EBCOM
          ~ kei_util_init_rc_str_get(4)
        find_handles_by_dst_mac:
          init:EXCEPTION GENERAL code 4, dst_mac
          ~ kei_util_init_rc_str_get(4)
        kel_ic_ebcom_scheduler_handle_get:
          init:EXCEPTION GENERAL code 4, find_handles_by_dst_mac
          FN_EXIT EBCOM
    )");
}

TEST(HandleLookUp, NothingIsFoundBeforeAnySetUp)
{
    EXPECT_EQ(queue_of(peer), untouched);
    EXPECT_EQ(scheduler_of(peer), untouched);
}

TEST(HandleLookUp, AllSixBytesMustBeEqual)
{
    scheduler_tree_up();
    add(unshaped(6));
    for (size_t byte = 0; byte < peer.size(); ++byte) {
        SCOPED_TRACE(byte);
        mac_address similar = peer;
        similar[byte] ^= 0x80;
        EXPECT_EQ(queue_of(similar), untouched);
        EXPECT_EQ(scheduler_of(similar), untouched);
    }
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
}

TEST(HandleLookUp, DestinationInTwoGroupsIsFoundInTheLowerOne)
{
    scheduler_tree_up();
    add(unshaped(8));  // first queue of the second group
    add(unshaped(24)); // last queue of the first group
    EXPECT_EQ(queue_of(peer), scripted::queue(2));
    EXPECT_EQ(scheduler_of(peer), group_scheduler(0));
}

TEST(HandleLookUp, DestinationOnTwoPortsOfAGroupIsFoundInTheLowerQueue)
{
    scheduler_tree_up();
    add(unshaped(19));
    add(unshaped(7));
    EXPECT_EQ(queue_of(peer), scripted::queue(2));
}

TEST(HandleLookUp, PortZeroIsSearchedLast)
{
    scheduler_tree_up();
    add(unshaped(0));
    add(unshaped(42));
    EXPECT_EQ(queue_of(peer), scripted::queue(2));
    EXPECT_EQ(scheduler_of(peer), group_scheduler(3));
}

TEST(Destinations, AreKeptAsCopies)
{
    scheduler_tree_up();
    kel_ebcom_path_config config = unshaped(6);
    add(config);
    config.dst_mac[5] = 0xEE;
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
    EXPECT_EQ(remove(config), 4U);
}

TEST(Destinations, TheSameOneTwiceOnAPortIsThereOnceAfterOneRemoval)
{
    scheduler_tree_up();
    add(unshaped(6));
    add(unshaped(6));
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(queue_of(peer), scripted::queue(1));
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(queue_of(peer), untouched);
    EXPECT_EQ(remove(unshaped(6)), 4U);
}

TEST(Destinations, AreRemovedFromTheirOwnPortOnly)
{
    scheduler_tree_up();
    add(unshaped(6));
    add(unshaped(7));
    EXPECT_EQ(remove(unshaped(8)), 4U);
    EXPECT_EQ(remove(unshaped(6)), 0U);
    EXPECT_EQ(remove(unshaped(6)), 4U);
    EXPECT_EQ(queue_of(peer), scripted::queue(2));
}

TEST(Destinations, ARemovedOneLeavesTheOthersOfItsPort)
{
    const mac_address destinations[] = {peer, second_peer, third_peer};
    scheduler_tree_up();
    for (const mac_address &removed : destinations) {
        for (const mac_address &each : destinations)
            EXPECT_EQ(add(unshaped(6, each)), 0U);
        EXPECT_EQ(remove(unshaped(6, removed)), 0U);
        for (const mac_address &each : destinations) {
            EXPECT_EQ(queue_of(each) == untouched, each == removed);
            EXPECT_EQ(remove(unshaped(6, each)), each == removed ? 4U : 0U);
        }
    }
}
