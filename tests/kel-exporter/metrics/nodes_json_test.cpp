// What the page gets.
#include "kel-exporter/metrics/nodes_json.h"

#include "made_up_node.h"

#include <gtest/gtest.h>

namespace kel_exporter
{
namespace
{

using notation::document;

TEST(NodesJson, HasWhatIsKnownOfEachNode)
{
    const known_node edge = made_up_node("edge");
    const std::chrono::system_clock::time_point today{std::chrono::milliseconds(1'700'000'000'500)};
    const document all = notation::read_json(nodes_json({edge, {.name = "new", .why = "it has not answered yet"}},
                                                        read_at + std::chrono::milliseconds(250), today));
    EXPECT_EQ(all.at("time").real(), 1'700'000'000.5);
    EXPECT_EQ(all.at("nodes")[0], document({{"name", "edge"},
                                            {"up", true},
                                            {"why", nullptr},
                                            {"file", "/etc/kelctl/edge.toml"},
                                            {"age", 0.25},
                                            {"state", *edge.state}}));
    EXPECT_EQ(all.at("nodes")[1], document({{"name", "new"},
                                            {"up", false},
                                            {"why", "it has not answered yet"},
                                            {"file", ""},
                                            {"age", nullptr},
                                            {"state", nullptr}}));
}

} // namespace
} // namespace kel_exporter
