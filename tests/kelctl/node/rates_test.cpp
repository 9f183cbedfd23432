// Rates of given readings.
#include "kelctl/node/rates.h"

#include "notation/json.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

constexpr uint64_t second = 1'000'000'000;

// A sample's times: virtual, and twice as much that is real.
fields at(uint64_t time, fields sample)
{
    sample["real"] = 2 * time;
    sample["virtual"] = time;
    return sample;
}

// From one sample to another a second later, the first two of a watch.
fields rates_in_a_second(const fields &before, const fields &now)
{
    const fields first = at(0, before);
    return rates_between(first, first, at(second, now));
}

fields with_queue(uint32_t frames, uint64_t octets, uint32_t dropped = 0, uint32_t waiting = 0)
{
    return {{"queues", fields::array({{{"port", 6},
                                       {"name", "RLU1P"},
                                       {"counters",
                                        {{"pkts_tx", frames},
                                         {"octets_tx", octets},
                                         {"pkts_dropped", dropped},
                                         {"pkts_out_standing", waiting}}}}})},
            {"pceps", fields::array()},
            {"delays", fields::array()}};
}

fields with_pcep(const char *counters)
{
    return {{"queues", fields::array()},
            {"pceps", fields::array({{{"id", 7}, {"counters", notation::read_json(counters)}}})},
            {"delays", fields::array()}};
}

TEST(Rates, QueueRatesAreThoseOfWhatLeft)
{
    const fields first = at(0, with_queue(0, 0));
    const fields before = at(second, with_queue(100, 1000));
    const fields now = at(second * 3 / 2, with_queue(150, 126'000, 3, 4));
    EXPECT_EQ(notation::to_json(rates_between(first, before, now)),
              R"({"nanoseconds":1500000000,"time":"virtual","queues":[{"port":6,"name":"RLU1P",)"
              R"("sent":{"frames":150,"frames_per_second":100,"kbit_per_second":2000},)"
              R"("frames_dropped":3,"frames_waiting":4}],"pceps":[],"delays":[]})");
}

TEST(Rates, WhereNoVirtualTimePassedTheyAreOverRealTime)
{
    const fields before = at(second, with_queue(0, 0));
    fields now = at(second, with_queue(100, 0));
    now["real"] = 4 * second;
    const fields found = rates_between(before, before, now);
    EXPECT_EQ(found.at("time"), "real");
    EXPECT_EQ(found.at("nanoseconds"), 2 * second);
    EXPECT_EQ(found.at("queues")[0].at("sent").at("frames_per_second"), 50);
}

TEST(Rates, WhereThereIsNoVirtualTimeTheyAreOverRealTime)
{
    fields before = at(second, with_queue(0, 0));
    fields now = at(3 * second, with_queue(100, 0));
    before["virtual"] = nullptr;
    now["virtual"] = nullptr;
    const fields found = rates_between(before, before, now);
    EXPECT_EQ(found.at("time"), "real");
    EXPECT_EQ(found.at("queues")[0].at("sent").at("frames_per_second"), 25);
}

TEST(Rates, ANodeThatWasSwitchedOffAndOnHasRatesOverRealTime)
{
    fields now = at(0, with_queue(7, 0));
    now["real"] = 3 * second;
    const fields found = rates_between(at(second, with_queue(100, 0)), at(second, with_queue(100, 0)), now);
    EXPECT_EQ(found.at("time"), "real");
    EXPECT_EQ(found.at("nanoseconds"), second);
}

TEST(Rates, FramesThatWrappedAroundIn32BitsAreCounted)
{
    const fields found = rates_in_a_second(with_queue(0xFFFF'FFFF, 0), with_queue(9, 0));
    EXPECT_EQ(found.at("queues")[0].at("sent").at("frames_per_second"), 10);
}

TEST(Rates, CountersThatWereResetCountFromZero)
{
    const fields found = rates_in_a_second(with_queue(0, 9'000), with_queue(0, 1'000));
    EXPECT_EQ(found.at("queues")[0].at("sent").at("kbit_per_second"), 8);
}

TEST(Rates, QueueThatTheLibraryDoesNotFindIsNotKnown)
{
    fields unknown = with_queue(0, 0);
    unknown["queues"][0]["counters"] = nullptr;
    EXPECT_EQ(notation::to_json(rates_in_a_second(unknown, unknown).at("queues")),
              R"([{"port":6,"name":"RLU1P","sent":null,"frames_dropped":null,"frames_waiting":null}])");
    EXPECT_TRUE(rates_in_a_second(unknown, with_queue(1, 1)).at("queues")[0].at("sent").is_null());
    EXPECT_TRUE(rates_in_a_second(with_queue(1, 1), unknown).at("queues")[0].at("sent").is_null());
}

TEST(Rates, AQueueIsComparedWithItselfAndOneThatIsNewIsLeftOut)
{
    fields now = with_queue(30, 0);
    fields other = with_queue(1000, 0);
    other["queues"][0]["port"] = 7;
    now["queues"] = fields::array({other.at("queues")[0], now.at("queues")[0]});
    const fields found = rates_in_a_second(with_queue(10, 0), now);
    ASSERT_EQ(found.at("queues").size(), 1u);
    EXPECT_EQ(found.at("queues")[0].at("port"), 6);
    EXPECT_EQ(found.at("queues")[0].at("sent").at("frames_per_second"), 20);
}

TEST(Rates, PcepCountersAreFoundByTheirNamesInAnyBlock)
{
    const fields first = at(
        0, with_pcep(
               R"({"in": {"frames_received": 1, "octets_received": 0}, "out": {"frames_sent": 5, "octets_sent": 0}})"));
    const fields now = at(2 * second, with_pcep(R"({"in": {"frames_received": 3, "octets_received": 250,
                      "frames_dropped": 9}, "out": {"frames_sent": 25, "octets_sent": 2500}})"));
    EXPECT_EQ(notation::to_json(rates_between(first, first, now).at("pceps")),
              R"([{"id":7,"sent":{"frames":25,"frames_per_second":10,"kbit_per_second":10},)"
              R"("received":{"frames":3,"frames_per_second":1,"kbit_per_second":1},"frames_dropped":9}])");
}

TEST(Rates, CountersThatAreNotThereAreZero)
{
    const fields found = rates_in_a_second(with_pcep(R"("no document")"), with_pcep("{}"));
    EXPECT_EQ(found.at("pceps")[0].at("sent").at("frames"), 0);
    EXPECT_EQ(found.at("pceps")[0].at("frames_dropped"), 0);
    const fields text = with_pcep(R"({"out": {"frames_sent": "many"}})");
    EXPECT_EQ(rates_in_a_second(text, text).at("pceps")[0].at("sent").at("frames"), 0);
}

// Ports or ids in the order in which they are then.
std::string order(const fields &rates, const char *list, const char *key, const char *sorted_by)
{
    const fields sorted = sorted_rates(rates, sorted_by);
    std::string order;
    for (const fields &row : sorted.at(list))
        order += (order.empty() ? "" : " ") + notation::to_json(row.at(key));
    return order;
}

TEST(Rates, AreSortedWithTheLargestFirstAndTheUnknownLast)
{
    const auto queue = [](int port, uint64_t frames, uint64_t rate, uint64_t dropped, uint64_t waiting) -> fields {
        return {{"port", port},
                {"sent", {{"frames", 1}, {"frames_per_second", frames}, {"kbit_per_second", rate}}},
                {"frames_dropped", dropped},
                {"frames_waiting", waiting}};
    };
    const auto pcep = [](int id, uint64_t sent, uint64_t received) -> fields {
        return {{"id", id},
                {"sent", {{"kbit_per_second", sent}, {"frames_per_second", sent}}},
                {"received", {{"kbit_per_second", received}, {"frames_per_second", received}}},
                {"frames_dropped", 0}};
    };
    const fields rates = {
        {"queues",
         fields::array({{{"port", 5}, {"sent", nullptr}, {"frames_dropped", nullptr}, {"frames_waiting", nullptr}},
                        queue(6, 1, 30, 2, 200),
                        queue(7, 3, 10, 3, 100),
                        queue(8, 2, 20, 1, 300)})},
        {"pceps", fields::array({pcep(1, 50, 0), pcep(2, 40, 40), pcep(3, 0, 60)})},
        {"delays", fields::array({{{"port", 6}, {"median", 1}}, {{"port", 7}, {"median", 9}}})}};
    EXPECT_EQ(order(rates, "queues", "port", ""), "5 6 7 8");
    EXPECT_EQ(order(rates, "queues", "port", "rate"), "6 8 7 5");
    EXPECT_EQ(order(rates, "queues", "port", "frames"), "7 8 6 5");
    EXPECT_EQ(order(rates, "queues", "port", "dropped"), "7 6 8 5");
    EXPECT_EQ(order(rates, "queues", "port", "waiting"), "8 6 7 5");
    EXPECT_EQ(order(rates, "pceps", "id", "rate"), "2 3 1");
    EXPECT_EQ(order(rates, "pceps", "id", "waiting"), "1 2 3");
    EXPECT_EQ(order(rates, "delays", "port", "delay"), "7 6");
}

} // namespace
} // namespace kelctl
