// The tables of keys against the reader: what may be left out, and what may not.
#include "kelctl/nodefile/node_keys.h"

#include "kelctl/nodefile/node_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

namespace kelctl
{
namespace
{

using keys_with_values = std::vector<std::pair<std::string, std::string>>;

// A sound file with every key that there is, table by table. Those without a value stand for what is not written: a table
// of its own, or one of two keys that exclude each other.
const std::vector<std::pair<std::string, keys_with_values>> complete_file = {
    {"node", {{"mpid", "5"}}},
    {"ebcom", {{"ic_port_mtu", "1500"}, {"ether_type", "0x88B5"}, {"settings", "[1, 2]"}}},
    {"path", {{"dst_mac", "\"02:00:00:02:00:01\""}, {"port", "\"RLU1P\""}, {"count", "2"}, {"shaping", ""}}},
    {"path.shaping", {{"rate", "100"}, {"burst", "4096"}, {"threshold", "25600"}}},
    {"pcep",
     {{"id", "7"},
      {"remote_id", "9"},
      {"local_mac", "\"02:00:00:03:00:01\""},
      {"remote_mac", "\"02:00:00:02:00:01\""},
      {"vlan", "100"},
      {"priority", "5"}}},
    {"multicast", {{"id", "300"}, {"members", "[7]"}}},
    {"traffic",
     {{"to", ""},
      {"from", "300"},
      {"octets", "64"},
      {"rate", "1000"},
      {"frames_per_second", ""},
      {"burst", "2"},
      {"start", "\"1 ms\""},
      {"stop", "\"2 s\""}}},
};

std::string heading_of(const std::string &table)
{
    for (const node_table &one : node_tables())
        if (one.name == table)
            return std::string(one.heading) + "\n";
    return "[unknown]\n";
}

// The file without one key. A table in a table is one of its keys.
std::string file_without(const std::string &left_out_table, std::string_view left_out)
{
    std::string text;
    for (const auto &[table, keys] : complete_file) {
        if (table == left_out_table + "." + std::string(left_out))
            continue;
        text += heading_of(table);
        for (const auto &[key, value] : keys)
            if (!value.empty() && (table != left_out_table || key != left_out))
                text += key + " = " + value + "\n";
    }
    return text;
}

bool is_written(std::string_view wanted)
{
    for (const auto &[table, keys] : complete_file)
        for (const auto &[key, value] : keys)
            if (key == wanted)
                return !value.empty();
    return false;
}

bool may_be_left_out(const node_key &key)
{
    return !key.otherwise.empty() || is_written(key.instead);
}

TEST(NodeKeys, AreThoseOfTheFileThatIsRead)
{
    EXPECT_THAT(parse_node_file(file_without("", "")).problems, testing::IsEmpty());
    ASSERT_EQ(node_tables().size(), complete_file.size());
    for (const auto &[table, keys] : complete_file) {
        std::vector<std::string> names;
        for (const auto &[key, value] : keys)
            names.push_back(key);
        EXPECT_THAT(node_keys_of(table), testing::UnorderedElementsAreArray(names)) << table;
    }
}

TEST(NodeKeys, MayBeLeftOutAsTheySay)
{
    for (const node_table &table : node_tables())
        for (const node_key &key : table.keys)
            EXPECT_EQ(parse_node_file(file_without(std::string(table.name), key.name)).problems.empty(),
                      may_be_left_out(key))
                << table.heading << ": " << key.name;
}

TEST(NodeKeys, TablesAreTheKeysOfTheFile)
{
    EXPECT_THAT(node_keys_of(""), testing::ElementsAre("node", "ebcom", "path", "pcep", "multicast", "traffic"));
}

} // namespace
} // namespace kelctl
