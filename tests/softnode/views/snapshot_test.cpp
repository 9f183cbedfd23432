/*
 * snapshot_test.cpp - the JSON document of a node, key by key.
 */
#include "softnode/views/snapshot.h"

#include "softnode/common/facts.h"
#include "tests/notation/print.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace softnode;
using json = notation::document;
using notation::read_json;

namespace
{

json look_into(const Node &node, const FaultBook &faults = {})
{
    return read_json(snapshot(node, faults));
}

Handle add_scheduler(Node &node, Handle parent)
{
    ork_qos_scheduler_params params{};
    params.parent = pointer_of(parent);
    params.qosRates = {.peak = {9'000'000, 1600}, .sr_mr_u = {.sustain = {8'000'000, 65'536}}};
    params.lengthCorrection = -4;
    params.shapingMode = 3;
    params.schedulingMode = 11;
    params.arbitrationMode = 7;
    params.serviceQuantum = 3036;
    params.rootId = 20;
    params.vsiEthDevId = facts::event_device;
    Handle scheduler = Handle::null;
    EXPECT_EQ(node.qos.create_scheduler(params, scheduler), Refusal::granted);
    return scheduler;
}

Handle add_queue(Node &node, Handle scheduler)
{
    Handle queue = Handle::null;
    EXPECT_EQ(node.qos.add_queue({1, 1000, 7 * 512, 1200}, facts::queue_kind, scheduler, facts::event_device, queue),
              Refusal::granted);
    return queue;
}

Handle add_pcep(Node &node, std::uint32_t id)
{
    const ork_ebcom_pcep_params params{{2, 0, 2, 3, 0, 1}, {2, 0, 2, 2, 0, 2}, 0x5123, 0, id, 0xabcdef77, 0, 0, 1, {}};
    Handle pcep = Handle::null;
    EXPECT_EQ(node.pceps.create_pcep(params, pcep), Refusal::granted);
    return pcep;
}

void hold_one_of_everything(Node &node)
{
    const Handle scheduler = add_scheduler(node, Handle::null);
    ASSERT_EQ(node.create_path({{2, 0, 2, 2, 0, 2}, 1, 9, pointer_of(add_queue(node, scheduler))}), Refusal::granted);
    ASSERT_EQ(node.offer({2, 0, 2, 2, 0, 2}, {1, 64}), Refusal::granted);
    add_pcep(node, 17);
    ASSERT_EQ(node.pceps.bind(17, node.attachment.ehsfp_target()), Refusal::granted);
    Handle group = Handle::null;
    ASSERT_EQ(node.create_group({100, {}}, scheduler, group), Refusal::granted);
    ASSERT_EQ(node.ebcom.create_interface(facts::event_device), Refusal::granted);
    ASSERT_EQ(node.ebcom.set_globals({1500, 0x88b5, 0x3a, 0}), Refusal::granted);
    node.timing.open(1);
    node.restarts.push_back({42, "main.cpp", "out of patience"});
}

using Keys = std::vector<std::string>;

/* "Frames and octets", and the counters made of these, are told of once for the whole document. */
bool told_of_elsewhere(const json &value)
{
    return value.find("received") || (value.size() == 2 && value.find("frames") && value.find("octets"));
}

/* The keys within a value, in their order. Of objects in an array those of the first. */
void append_keys(const json &value, Keys &keys)
{
    if (value.is_array() && !value.empty())
        append_keys(value[0], keys);
    if (!value.is_object() || told_of_elsewhere(value))
        return;
    for (const auto &[key, inner] : value.members()) {
        keys.push_back(key);
        append_keys(inner, keys);
    }
}

/* What is between backticks. */
std::vector<std::string> code_in(const std::string &line)
{
    std::vector<std::string> code;
    std::istringstream parts(line);
    for (std::string text, marked; std::getline(parts, text, '`') && std::getline(parts, marked, '`');)
        code.push_back(marked);
    return code;
}

/* Of each row of the document's table what is in it as code: the key, and the keys within. */
std::vector<Keys> documented_keys()
{
    std::ifstream document(SNAPSHOT_DOCUMENT);
    std::vector<Keys> rows;
    bool there = false;
    for (std::string line; std::getline(document, line);) {
        there = there || line == "## The snapshot";
        if (there && line.starts_with("| `"))
            rows.push_back(code_in(line));
    }
    return rows;
}

} // namespace

TEST(Snapshot, OfAFreshNodeHasEveryKeyAndNothingBehindIt)
{
    EXPECT_EQ(look_into(Node{}), read_json(R"({
        "time": 0, "schedulers": [], "queues": [], "paths": [], "pceps": [], "bindings": [], "groups": [],
        "interface": null, "globals": null,
        "statistics": {"received": {"frames": 0, "octets": 0}, "sent": {"frames": 0, "octets": 0},
                       "dropped": {"frames": 0, "octets": 0}},
        "drops": {"too_long": {"frames": 0, "octets": 0}, "no_room": {"frames": 0, "octets": 0},
                  "no_way": {"frames": 0, "octets": 0}, "no_queue": {"frames": 0, "octets": 0}},
        "on_the_line": null,
        "timestamp_offset": null,
        "timing_unit": {"reading": {"cycles": 40, "frequency": 250000}, "connections": [], "blocked": []},
        "restarts": [], "calls": {}, "faults": []
    })"));
}

TEST(Snapshot, KeysComeInTheDocumentedOrder)
{
    Node node;
    hold_one_of_everything(node);
    FaultBook faults;
    ASSERT_EQ(faults.add("vorn_tu_init=-1"), "");
    const auto document = read_json(snapshot(node, faults));
    std::vector<Keys> keys;
    for (const auto &[key, value] : document.members()) {
        keys.push_back({key});
        append_keys(value, keys.back());
    }
    EXPECT_EQ(keys, documented_keys());
}

TEST(Snapshot, ShowsSchedulersWithWhatHangsBelow)
{
    Node node;
    const Handle top = add_scheduler(node, Handle::null);
    add_scheduler(node, top);
    add_scheduler(node, top);
    add_queue(node, top);
    const json schedulers = look_into(node).at("schedulers");
    ASSERT_EQ(schedulers.size(), 3U);
    EXPECT_EQ(schedulers[0], read_json(R"({
        "handle": "0x5c00000001", "parent": null,
        "children": ["0x5c00000002", "0x5c00000003"], "queues": ["0x5d00000001"],
        "peak_rate": 9000000, "peak_burst": 1600, "sustain_rate": 8000000, "sustain_burst": 65536,
        "length_correction": -4,
        "shaping_mode": 3, "scheduling_mode": 11, "arbitration_mode": 7, "service_quantum": 3036, "root_id": 20
    })"));
    EXPECT_EQ(schedulers[1].at("parent"), "0x5c00000001");
    EXPECT_EQ(schedulers[1].at("children"), json::array());
}

TEST(Snapshot, ShowsQueues)
{
    Node node;
    const Handle queue = add_queue(node, add_scheduler(node, Handle::null));
    ASSERT_EQ(node.create_path({{2, 0, 2, 2, 0, 2}, 1, 9, pointer_of(queue)}), Refusal::granted);
    ASSERT_EQ(node.offer({2, 0, 2, 2, 0, 2}, {10, 300}), Refusal::granted);
    node.advance(1000);
    EXPECT_EQ(look_into(node).at("queues"), read_json(R"([{
        "handle": "0x5d00000001", "scheduler": "0x5c00000001",
        "rate": 1000, "threshold": 3584, "bucket_size": 1200, "shaped": true,
        "counters": {"received": {"frames": 10, "octets": 3000}, "sent": {"frames": 4, "octets": 1200},
                     "dropped": {"frames": 2, "octets": 600}},
        "waiting": {"frames": 4, "octets": 1200, "blocks": 8},
        "deepest": {"frames": 7, "octets": 2100, "blocks": 14},
        "delay": {"frames": 4, "sum": 1536, "median": 258, "p99": 768, "largest": 768}
    }])"));
}

TEST(Snapshot, ShowsTheFrameOnTheLine)
{
    Node node;
    ASSERT_EQ(node.create_path({{2, 0, 2, 2, 0, 2}, 1, 9, pointer_of(add_queue(node, add_scheduler(node, {})))}),
              Refusal::granted);
    node.advance(5);
    ASSERT_EQ(node.offer({2, 0, 2, 2, 0, 2}, {1, 300}), Refusal::granted);
    EXPECT_EQ(look_into(node).at("on_the_line"),
              read_json(R"({"mac": "02:00:02:02:00:02", "octets": 300, "arrives": 252})"));
    node.advance(247);
    EXPECT_TRUE(look_into(node).at("on_the_line").is_null());
    node.advance(end_of_time);
    ASSERT_EQ(node.offer({2, 0, 2, 2, 0, 2}, {1, 300}), Refusal::granted);
    EXPECT_TRUE(look_into(node).at("on_the_line").at("arrives").is_null());
}

TEST(Snapshot, ShowsWhatWasDroppedByReason)
{
    Node node;
    node.ebcom.drop(Drop::too_long, {1, 10});
    node.ebcom.drop(Drop::no_room, {2, 20});
    node.ebcom.drop(Drop::no_way, {3, 30});
    node.ebcom.drop(Drop::no_queue, {4, 40});
    EXPECT_EQ(look_into(node).at("drops"), read_json(R"({
        "too_long": {"frames": 1, "octets": 10}, "no_room": {"frames": 2, "octets": 20},
        "no_way": {"frames": 3, "octets": 30}, "no_queue": {"frames": 4, "octets": 40}
    })"));
}

TEST(Snapshot, ShowsPathsWithAndWithoutQueue)
{
    Node node;
    const Handle queue = add_queue(node, add_scheduler(node, Handle::null));
    const Handle removed = add_queue(node, add_scheduler(node, Handle::null));
    ASSERT_EQ(node.create_path({{2, 0, 2, 2, 0, 2}, 1, 9, pointer_of(queue)}), Refusal::granted);
    ASSERT_EQ(node.create_path({{2, 0, 2, 2, 0, 1}, 2, 0, pointer_of(removed)}), Refusal::granted);
    ASSERT_EQ(node.remove_queue(removed), Refusal::granted);
    EXPECT_EQ(look_into(node).at("paths"), read_json(R"([
        {"mac": "02:00:02:02:00:01", "type": 2, "eioa_port": 0, "queue": null},
        {"mac": "02:00:02:02:00:02", "type": 1, "eioa_port": 9, "queue": "0x5d00000001"}
    ])"));
}

TEST(Snapshot, ShowsPcepsAndTheirBindings)
{
    Node node;
    const Handle bound = add_pcep(node, 17);
    const Handle unbound = add_pcep(node, 5);
    ASSERT_EQ(node.pceps.bind(17, node.attachment.ehsfp_target()), Refusal::granted);
    ASSERT_EQ(node.pceps.account(bound, Fate::received, {2, 100}), Refusal::granted);
    ASSERT_EQ(node.pceps.account(bound, Fate::sent, {3, 100}), Refusal::granted);
    ASSERT_EQ(node.pceps.account(bound, Fate::dropped, {1, 50}), Refusal::granted);
    const json document = look_into(node);
    ASSERT_EQ(document.at("pceps").size(), 2U);
    EXPECT_EQ(document.at("pceps")[0], read_json(R"({
        "handle": "0x5400000001", "id": 17, "remote_id": 11259375,
        "local_mac": "02:00:02:03:00:01", "remote_mac": "02:00:02:02:00:02", "vlan": 291, "priority": 5,
        "target": "0x5200000001",
        "counters": {"received": {"frames": 2, "octets": 200}, "sent": {"frames": 3, "octets": 300},
                     "dropped": {"frames": 1, "octets": 50}}
    })"));
    EXPECT_EQ(document.at("pceps")[1].at("handle"), text_of(unbound));
    EXPECT_TRUE(document.at("pceps")[1].at("target").is_null());
    EXPECT_EQ(document.at("bindings"), read_json(R"([{"pcep": 17, "target": "0x5200000001"}])"));
}

TEST(Snapshot, ShowsGroupsWithTheirMembers)
{
    Node node;
    const Handle scheduler = add_scheduler(node, Handle::null);
    Handle through_paths = Handle::null;
    Handle through_scheduler = Handle::null;
    ASSERT_EQ(node.create_group({100, {}}, Handle::null, through_paths), Refusal::granted);
    ASSERT_EQ(node.create_group({101, {}}, scheduler, through_scheduler), Refusal::granted);
    for (const std::uint32_t member : {9U, 4U}) {
        add_pcep(node, member);
        ASSERT_EQ(node.pceps.add_member(through_paths, member), Refusal::granted);
    }
    node.pceps.account_replication(through_paths, {3, 100}, 1);
    EXPECT_EQ(look_into(node).at("groups"), read_json(R"([
        {"handle": "0x5500000001", "id": 100, "scheduler": null, "members": [9, 4],
         "counters": {"offered": {"frames": 3, "octets": 300}, "copies": {"frames": 6, "octets": 600},
                      "dropped": {"frames": 3, "octets": 300}}},
        {"handle": "0x5500000002", "id": 101, "scheduler": "0x5c00000001", "members": [],
         "counters": {"offered": {"frames": 0, "octets": 0}, "copies": {"frames": 0, "octets": 0},
                      "dropped": {"frames": 0, "octets": 0}}}
    ])"));
}

TEST(Snapshot, ShowsTheTime)
{
    Node node;
    node.advance(18'000'000'000'000'000'000U);
    EXPECT_EQ(look_into(node).at("time"), 18'000'000'000'000'000'000U);
}

TEST(Snapshot, ShowsTheServicesCounters)
{
    Node node;
    node.ebcom.account(Fate::received, {1, 64});
    node.ebcom.account(Fate::sent, {2, 64});
    node.ebcom.account(Fate::dropped, {3, 64});
    EXPECT_EQ(look_into(node).at("statistics"), read_json(R"({
        "received": {"frames": 1, "octets": 64}, "sent": {"frames": 2, "octets": 128},
        "dropped": {"frames": 3, "octets": 192}
    })"));
}

TEST(Snapshot, ShowsTheServicesSettings)
{
    Node node;
    ASSERT_EQ(node.ebcom.create_interface(facts::event_device), Refusal::granted);
    ASSERT_EQ(node.ebcom.set_globals({1500, 0x88b5, 0x3a, 0}), Refusal::granted);
    node.ebcom.set_timestamp_offset(-160);
    const json document = look_into(node);
    EXPECT_EQ(document.at("interface"), read_json(R"({"eth_dev_id": 7, "vsi": 258})"));
    EXPECT_EQ(document.at("globals"), read_json(R"({"mtu": 1500, "ether_type": 34997, "settings": [10, 3]})"));
    EXPECT_EQ(document.at("timestamp_offset"), -160);
}

TEST(Snapshot, ShowsTheTimingUnit)
{
    Node node;
    node.timing.set_reading({-5, 300'000});
    node.timing.join(1);
    const Handle connection = node.timing.open(1);
    ASSERT_EQ(node.timing.subscribe(connection, 0), Refusal::granted);
    node.timing.post({6, 0, 0});
    node.timing.post({6, 0, 0});
    node.timing.post({6, 0, 0});
    vorn_tu_event *event = nullptr;
    ASSERT_EQ(node.timing.take_event(connection, 1, event), Refusal::granted);
    node.timing.open(2);
    EXPECT_EQ(look_into(node).at("timing_unit"), read_json(R"({
        "reading": {"cycles": -5, "frequency": 300000},
        "connections": [
            {"handle": "0x6000000001", "subscribed": true, "state": "working", "events_left": 2,
             "events_outstanding": 1},
            {"handle": "0x6000000002", "subscribed": false, "state": "ended", "events_left": 0,
             "events_outstanding": 0}
        ],
        "blocked": []
    })"));
}

TEST(Snapshot, ShowsAWaitingConnection)
{
    Node node;
    const Handle connection = node.timing.open(1);
    vorn_tu_event *event = nullptr;
    ASSERT_EQ(node.timing.take_event(connection, 1, event), Refusal::granted);
    EXPECT_EQ(look_into(node).at("timing_unit").at("connections")[0].at("state"), "waiting");
}

TEST(Snapshot, ShowsABlockedCallAndItsConnection)
{
    Node node;
    node.timing.open(3);
    node.timing.hold(3, *closed_function("vorn_tu_get_nputimeoffset"));
    node.timing.hold(1, *closed_function("vorn_tu_init"));
    const json timing_unit = look_into(node).at("timing_unit");
    EXPECT_EQ(timing_unit.at("connections")[0].at("state"), "blocked");
    EXPECT_EQ(timing_unit.at("blocked"), read_json(R"(["vorn_tu_init", "vorn_tu_get_nputimeoffset"])"));
}

TEST(Snapshot, ShowsRestartRequests)
{
    Node node;
    node.restarts.push_back({42, "main.cpp", "out of patience"});
    EXPECT_EQ(look_into(node).at("restarts"),
              read_json(R"([{"line": 42, "file": "main.cpp", "reason": "out of patience"}])"));
}

TEST(Snapshot, StandsARestartReasonThatIsNoUtf8)
{
    Node node;
    node.restarts.push_back({42, "main.cpp", "cut \xc3"});
    EXPECT_EQ(look_into(node).at("restarts")[0].at("reason"), "cut \xef\xbf\xbd");
}

TEST(Snapshot, ShowsCallsAndFaults)
{
    FaultBook faults;
    ASSERT_EQ(faults.add("kel_init_attach:2=10;vorn_tu_init=-1"), "");
    faults.begin_call(*closed_function("kel_init_attach"));
    faults.begin_call(*closed_function("kel_init_attach"));
    const json document = look_into({}, faults);
    EXPECT_EQ(document.at("calls"), read_json(R"({"kel_init_attach": 2})"));
    EXPECT_EQ(document.at("faults"), read_json(R"([{"rule": "kel_init_attach:2=10", "hits": 1},
                                                  {"rule": "vorn_tu_init=-1", "hits": 0}])"));
}

TEST(QueueList, IsTheSnapshotsPart)
{
    Node node;
    add_queue(node, add_scheduler(node, Handle::null));
    EXPECT_EQ(read_json(queue_list(node)), look_into(node).at("queues"));
}

TEST(FaultList, IsTheSnapshotsPart)
{
    FaultBook faults;
    ASSERT_EQ(faults.add("kel_init_attach:2=10"), "");
    EXPECT_EQ(read_json(fault_list(faults)), look_into({}, faults).at("faults"));
}
