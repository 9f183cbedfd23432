// Rates of given readings.
#include "kelctl/node/rates.h"

#include "notation/json.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

constexpr uint64_t second = 1'000'000'000;

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
    EXPECT_EQ(notation::to_json(rates_between(with_queue(100, 1000), with_queue(150, 126'000, 3, 4), second / 2, 5)),
              R"({"nanoseconds":5,"queues":[{"port":6,"name":"RLU1P",)"
              R"("sent":{"frames":150,"frames_per_second":100,"kbit_per_second":2000},)"
              R"("frames_dropped":3,"frames_waiting":4}],"pceps":[],"delays":[]})");
}

TEST(Rates, FramesThatWrappedAroundIn32BitsAreCounted)
{
    const fields found = rates_between(with_queue(0xFFFF'FFFF, 0), with_queue(9, 0), second, 0);
    EXPECT_EQ(found.at("queues")[0].at("sent").at("frames_per_second"), 10);
}

TEST(Rates, QueueThatTheLibraryDoesNotFindIsNotKnown)
{
    fields unknown = with_queue(0, 0);
    unknown["queues"][0]["counters"] = nullptr;
    EXPECT_EQ(notation::to_json(rates_between(unknown, unknown, second, 0).at("queues")),
              R"([{"port":6,"name":"RLU1P","sent":null,"frames_dropped":null,"frames_waiting":null}])");
}

TEST(Rates, PcepCountersAreFoundByTheirNamesInAnyBlock)
{
    const fields found = rates_between(
        with_pcep(
            R"({"in": {"frames_received": 1, "octets_received": 0}, "out": {"frames_sent": 5, "octets_sent": 0}})"),
        with_pcep(R"({"in": {"frames_received": 3, "octets_received": 250, "frames_dropped": 9},
                      "out": {"frames_sent": 25, "octets_sent": 2500}})"),
        2 * second, 0);
    EXPECT_EQ(notation::to_json(found.at("pceps")),
              R"([{"id":7,"sent":{"frames":25,"frames_per_second":10,"kbit_per_second":10},)"
              R"("received":{"frames":3,"frames_per_second":1,"kbit_per_second":1},"frames_dropped":9}])");
}

TEST(Rates, CountersThatAreNotThereAreZero)
{
    const fields found = rates_between(with_pcep(R"("no document")"), with_pcep("{}"), second, 0);
    EXPECT_EQ(found.at("pceps")[0].at("sent").at("frames"), 0);
    EXPECT_EQ(found.at("pceps")[0].at("frames_dropped"), 0);
}

} // namespace
} // namespace kelctl
