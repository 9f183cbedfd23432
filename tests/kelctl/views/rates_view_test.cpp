// The layout of given rates.
#include "kelctl/views/rates_view.h"

#include "notation/json.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

const painter plain(false);

rates some_rates()
{
    rates all;
    all.queues = {{.port = 6, .known = true, .sent = {1, 2, 3}, .dropped = 4, .waiting = 5},
                  {.port = 10, .known = false, .sent = {}, .dropped = 0, .waiting = 0}};
    all.pceps = {{.id = 511, .sent = {1, 2, 3}, .received = {4, 5, 6}, .dropped = 7}};
    return all;
}

TEST(RatesView, EveryNumberHasItsColumn)
{
    EXPECT_EQ(rates_view(some_rates(), 1'200'000'000, plain),
              "Virtual time 1200 ms\n"
              "Queues        frames/s     kbit/s        sent     dropped     waiting\n"
              "RLU1P (6)            2          3           1           4           5\n"
              "RLU3P (10)   not known: the library finds its destinations on other queues\n"
              "PCEPs  frames/s     kbit/s       sent    frames/s     kbit/s   received  dropped\n"
              "511           2          3          1           5          6          4        7\n");
}

TEST(RatesView, NodeWithoutQueuesAndPcepsHasItsTimeOnly)
{
    EXPECT_EQ(rates_view({}, 0, plain), "Virtual time 0 ns\n");
}

TEST(RatesView, ProgramsGetTheSame)
{
    EXPECT_EQ(notation::to_json(rates_fields(some_rates(), 5)),
              R"({"nanoseconds":5,"queues":[{"port":6,"name":"RLU1P",)"
              R"("sent":{"frames":1,"frames_per_second":2,"kbit_per_second":3},"frames_dropped":4,"frames_waiting":5},)"
              R"({"port":10,"name":"RLU3P","sent":null,"frames_dropped":null,"frames_waiting":null}],)"
              R"("pceps":[{"id":511,"sent":{"frames":1,"frames_per_second":2,"kbit_per_second":3},)"
              R"("received":{"frames":4,"frames_per_second":5,"kbit_per_second":6},"frames_dropped":7}]})");
}

} // namespace
} // namespace kelctl
