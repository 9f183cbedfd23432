// The rules that all metrics keep, and docs/metrics.md.
#include "kel-exporter/metrics/families.h"

#include "made_up_node.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>

namespace kel_exporter
{
namespace
{

constexpr const char *suffixes[] = {"_total", "", "_info"};
constexpr const char *types[] = {"counter", "gauge", "gauge"};

std::string name_of(const family &of)
{
    return std::string(of.name) + suffixes[static_cast<size_t>(of.type)];
}

struct sample {
    std::vector<label> labels;
    std::string value;
};

std::vector<sample> samples_of(const family &of)
{
    std::vector<sample> all;
    of.read(of, made_up_node("edge"), read_at, [&](const std::vector<label> &labels, const std::string &value) {
        all.push_back({labels, value});
    });
    return all;
}

std::string label_names(const family &of)
{
    std::string names;
    const std::vector<sample> samples = samples_of(of);
    for (const auto &[name, value] : samples.at(0).labels)
        names += (names.empty() ? "`" : ", `") + std::string(name) + "`";
    return names;
}

TEST(Families, AreNamedByObjectWhatAndUnit)
{
    std::set<std::string> names;
    for (const family &of : families()) {
        EXPECT_THAT(std::string(of.name),
                    testing::MatchesRegex("kel_(node|operations|timestamp|ebcom|queue|pcep|exporter)[a-z_]*"));
        EXPECT_TRUE(of.unit.empty() || of.name.ends_with("_" + std::string(of.unit))) << of.name;
        EXPECT_TRUE(of.help.ends_with('.')) << of.name;
        EXPECT_TRUE(names.insert(name_of(of)).second) << of.name;
    }
}

// Values that change, such as rates, are no labels.
TEST(Families, HaveStableLabelsThatBeginWithTheNode)
{
    const std::set<std::string_view> stable = {"node",     "port",      "unit",   "pcep",
                                               "location", "operation", "result", "file"};
    for (const family &of : families())
        for (const auto &[labels, value] : samples_of(of)) {
            EXPECT_EQ(labels.at(0), label("node", "edge")) << of.name;
            for (const auto &[name, text] : labels)
                EXPECT_TRUE(stable.contains(name)) << of.name << ": " << name;
        }
}

TEST(Families, AreThoseOfTheDocument)
{
    std::vector<std::string> expected;
    for (const family &of : families())
        expected.push_back("| `" + name_of(of) + "` | " + types[static_cast<size_t>(of.type)] + " | " +
                           label_names(of) + " | " + std::string(of.help) + " | " +
                           (of.source.empty() ? "" : "`" + std::string(of.source) + "`"));
    std::ifstream document(KEL_EXPORTER_SOURCE_DIR "/docs/metrics.md");
    std::vector<std::string> found;
    for (std::string line; std::getline(document, line);)
        if (line.starts_with("| `kel_"))
            found.push_back(line);
    ASSERT_EQ(found.size(), expected.size());
    for (size_t i = 0; i < found.size(); ++i)
        EXPECT_THAT(found[i], testing::StartsWith(expected[i]));
}

} // namespace
} // namespace kel_exporter
