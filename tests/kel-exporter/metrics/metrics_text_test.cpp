// Both text formats of two nodes, one of which is gone. KEL_EXPORTER_WRITE_EXPECTED=1 writes what is expected anew.
#include "kel-exporter/metrics/metrics_text.h"

#include "made_up_node.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace kel_exporter
{
namespace
{

using testing::HasSubstr;
using testing::Not;

const watch_clock::time_point now = read_at + std::chrono::milliseconds(250);

std::vector<known_node> one_up_one_gone()
{
    known_node gone = made_up_node("gone");
    gone.up = false;
    gone.why = "no process serves this socket any more";
    return {made_up_node("edge"), gone};
}

void expect_file(const std::string &name, const std::string &text)
{
    const std::string path = std::string(KEL_EXPORTER_EXPECTED_DIR) + "/" + name;
    if (std::getenv("KEL_EXPORTER_WRITE_EXPECTED"))
        std::ofstream(path) << text;
    std::ifstream file(path);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(file), {})) << name;
}

TEST(MetricsText, ClassicFormat)
{
    expect_file("classic.expected", metrics_text(text_format::classic, one_up_one_gone(), now));
}

TEST(MetricsText, OpenMetrics)
{
    expect_file("open_metrics.expected", metrics_text(text_format::open_metrics, one_up_one_gone(), now));
}

TEST(MetricsText, WithoutNodesHasNoFamilies)
{
    EXPECT_EQ(metrics_text(text_format::classic, {}, now), "");
    EXPECT_EQ(metrics_text(text_format::open_metrics, {}, now), "# EOF\n");
}

TEST(MetricsText, OfANodeThatHasNotAnsweredYetSaysThatAlone)
{
    EXPECT_EQ(metrics_text(text_format::classic, {{.name = "new"}}, now),
              "# HELP kel_node_up Whether the node answers: 1 or 0.\n# TYPE kel_node_up gauge\n"
              "kel_node_up{node=\"new\"} 0\n");
}

TEST(MetricsText, LabelsAreEscapedAndAlwaysUtf8)
{
    EXPECT_THAT(metrics_text(text_format::classic, {{.name = "a\"b\\c\nd\xFF"}}, now),
                HasSubstr("kel_node_up{node=\"a\\\"b\\\\c\\nd\xEF\xBF\xBD\"} 0\n"));
}

// Whoever scrapes the other nodes gets them.
TEST(MetricsText, LeavesOutWhatANodeOfAnotherVersionDoesNotAnswer)
{
    known_node older = made_up_node("older");
    older.state = std::make_shared<const notation::document>(notation::read_json(R"({"queues": [{"port": 6}]})"));
    const std::string text = metrics_text(text_format::classic, {older, made_up_node("edge")}, now);
    EXPECT_THAT(text, HasSubstr("kel_node_up{node=\"older\"} 1\n"));
    EXPECT_THAT(text, Not(HasSubstr("_total{node=\"older\"")));
    EXPECT_THAT(text, HasSubstr("kel_queue_sent_bytes_total{node=\"edge\",port=\"RLU1P\",unit=\"RLU1\"} 8\n"));
}

TEST(MetricsText, MediaTypesHaveTheirVersions)
{
    EXPECT_THAT(media_type(text_format::classic), HasSubstr("text/plain; version=0.0.4"));
    EXPECT_THAT(media_type(text_format::open_metrics), HasSubstr("application/openmetrics-text; version=1.0.0"));
}

} // namespace
} // namespace kel_exporter
