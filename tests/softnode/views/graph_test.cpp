/*
 * graph_test.cpp - the picture of a node, drawn by Graphviz: every object is there once, and edges lead on.
 */
#include "softnode/views/graph.h"

#include "node/traffic.h"

#include "command.h"
#include "markup.h"
#include "temporary_file.h"

#include "softnode/common/facts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <compare>
#include <set>
#include <string>
#include <vector>

using namespace softnode;

namespace
{

/* Draws the picture. What Graphviz complains about is part of the output. */
Outcome drawn(const Node &node)
{
    const TemporaryFile file(graph(node));
    return run("dot -Tsvg '" + file.name() + "' 2>&1");
}

/* Every text of the drawing, without margins. */
std::vector<std::string> texts_of(const std::string &drawing)
{
    std::vector<std::string> texts;
    for (const std::string &element : between(drawing, "<text", "</text>"))
        texts.push_back(replaced(element.substr(element.find('>') + 1), "\u00a0", ""));
    return texts;
}

struct Edge {
    std::string from;
    std::string to;

    auto operator<=>(const Edge &) const = default;
};

/* Which node leads to which, without ports. Edges that only hold columns apart are none. */
std::set<Edge> edges_of(const std::string &picture)
{
    std::set<Edge> edges;
    for (const std::string &line : between(replaced(picture, "\n", "\n\n"), "\n", "\n")) {
        const std::size_t arrow = line.find(" -> ");
        if (arrow == std::string::npos || line.find("[style=invis]") != std::string::npos)
            continue;
        edges.insert(
            {between(line.substr(0, arrow), "\"", "\"").front(), between(line.substr(arrow), "\"", "\"").front()});
    }
    return edges;
}

/* A whole node: two schedulers over a chain, three queues, paths, PCEPs, groups. */
class Graph : public testing::Test
{
protected:
    Graph()
    {
        top = add_scheduler(add_scheduler(Handle::null));
        left = add_scheduler(top);
        right = add_scheduler(top);
        first = add_queue(left, {1, 100'000, 1'048'576, 65'536});
        second = add_queue(right, {1, 0, 5'120'000, 0});
        add_path(1, first);
        for (std::uint8_t number = 10; number < 20; ++number)
            add_path(number, second);
        to_first = add_pcep(1, 1);
        to_further = add_pcep(2, 19);
        nowhere = add_pcep(3, 99);
        EXPECT_EQ(node.pceps.bind(3, node.attachment.ehsfp_target()), Refusal::granted);
        group = add_group(300, Handle::null, {1, 3});
        other_group = add_group(301, left, {});
    }

    Handle add_scheduler(Handle parent)
    {
        const ork_qos_scheduler_params params = scheduler_params(parent);
        Handle scheduler = Handle::null;
        EXPECT_EQ(node.qos.create_scheduler(params, scheduler), Refusal::granted);
        return scheduler;
    }

    Handle add_queue(Handle scheduler, const kel_init_qos_queue_params &params)
    {
        Handle queue = Handle::null;
        EXPECT_EQ(node.qos.add_queue(params, facts::queue_kind, scheduler, facts::event_device, queue),
                  Refusal::granted);
        return queue;
    }

    void add_path(std::uint8_t number, Handle queue)
    {
        EXPECT_EQ(node.create_path({{2, 0, 0, 2, 0, number}, 2, 0, pointer_of(queue)}), Refusal::granted);
    }

    Handle add_pcep(std::uint32_t id, std::uint8_t remote)
    {
        const ork_ebcom_pcep_params params{{2, 0, 0, 3, 0, 1}, {2, 0, 0, 2, 0, remote}, 100, 0, id, 0, 0, 0, 1, {}};
        Handle pcep = Handle::null;
        EXPECT_EQ(node.pceps.create_pcep(params, pcep), Refusal::granted);
        return pcep;
    }

    Handle add_group(std::uint16_t id, Handle scheduler, const std::vector<std::uint32_t> &members)
    {
        Handle created = Handle::null;
        EXPECT_EQ(node.create_group({id, {}}, scheduler, created), Refusal::granted);
        for (const std::uint32_t member : members)
            EXPECT_EQ(node.pceps.add_member(created, member), Refusal::granted);
        return created;
    }

    bool leads(const std::string &from, const std::string &to) const
    {
        return edges_of(graph(node)).contains({from, to});
    }

    bool leads(Handle from, Handle to) const
    {
        return leads(text_of(from), text_of(to));
    }

    Node node;
    Handle top{}, left{}, right{}, first{}, second{}, to_first{}, to_further{}, nowhere{}, group{}, other_group{};
};

} // namespace

TEST_F(Graph, IsDrawnWithoutComplaint)
{
    const Outcome outcome = drawn(node);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.find("<?xml"), 0U) << outcome.output;
}

TEST_F(Graph, OfAFreshNodeIsDrawnToo)
{
    const Outcome outcome = drawn(Node{});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.find("<?xml"), 0U) << outcome.output;
}

TEST_F(Graph, EveryHandleStandsThereOnce)
{
    std::vector<std::string> shown = texts_of(drawn(node).output);
    std::erase_if(shown, [](const std::string &text) { return !text.starts_with("0x5"); });
    std::vector<std::string> expected{text_of(node.attachment.ehsfp_target())};
    for (const auto &[handle, scheduler] : node.qos.schedulers())
        expected.push_back(text_of(handle));
    for (const auto &[handle, queue] : node.qos.queues())
        expected.push_back(text_of(handle));
    for (const auto &[handle, pcep] : node.pceps.pceps())
        expected.push_back(text_of(handle));
    for (const auto &[handle, listed] : node.pceps.groups())
        expected.push_back(text_of(handle));
    std::sort(shown.begin(), shown.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(shown, expected);
}

TEST_F(Graph, EveryNodeHasABoxAndEveryEdgeEndsAtOne)
{
    const std::string picture = graph(node);
    const auto boxes = between(picture, "\n        \"", "\" [label=<<table");
    const std::set<std::string> names(boxes.begin(), boxes.end());
    EXPECT_EQ(names.size(), boxes.size());
    EXPECT_EQ(edges_of(picture).size(), 11U);
    for (const auto &[from, to] : edges_of(picture)) {
        EXPECT_TRUE(names.contains(from)) << from;
        EXPECT_TRUE(names.contains(to)) << to;
    }
}

TEST_F(Graph, EdgesLeadFromGroupsToTheEthernetDevice)
{
    EXPECT_TRUE(leads(group, to_first));
    EXPECT_TRUE(leads(group, nowhere));
    EXPECT_FALSE(leads(group, to_further));
    EXPECT_TRUE(leads(other_group, left));
    EXPECT_TRUE(leads(node.attachment.ehsfp_target(), nowhere));
    EXPECT_TRUE(leads(to_first, first));
    EXPECT_TRUE(leads(to_further, second));
    EXPECT_TRUE(leads(first, left));
    EXPECT_TRUE(leads(second, right));
    const std::string chain = text_of(node.qos.schedulers().begin()->first);
    EXPECT_TRUE(leads(text_of(left), chain));
    EXPECT_TRUE(leads(chain, "interface"));
}

TEST_F(Graph, APcepsEdgeEndsAtItsDestinationOrAtThoseOnlyCounted)
{
    const std::string picture = graph(node);
    EXPECT_NE(picture.find("\"" + text_of(to_first) + "\":\"remote\":e -> \"" + text_of(first) + "\":\"0\":w"),
              std::string::npos);
    EXPECT_NE(picture.find("\"" + text_of(to_further) + "\":\"remote\":e -> \"" + text_of(second) + "\":\"further\":w"),
              std::string::npos);
}

TEST_F(Graph, PathsWhoseQueueWasRemovedAreShown)
{
    ASSERT_EQ(node.remove_queue(first), Refusal::granted);
    EXPECT_TRUE(leads(text_of(to_first), "without a queue"));
    const Outcome outcome = drawn(node);
    EXPECT_EQ(outcome.output.find("<?xml"), 0U) << outcome.output;
    EXPECT_NE(outcome.output.find("02:00:00:02:00:01"), std::string::npos);
}

TEST_F(Graph, AMemberThatIsNoMoreHasNoEdge)
{
    ASSERT_EQ(node.pceps.delete_pcep(to_first), Refusal::granted);
    EXPECT_FALSE(leads(group, to_first));
    EXPECT_NE(graph(node).find("PCEP 1 does not exist"), std::string::npos);
}

TEST_F(Graph, APcepThatSendsStraightToAnotherLeadsSomewhere)
{
    const ork_ebcom_pcep_params params{{2, 0, 0, 3, 0, 2}, {2, 0, 0, 3, 0, 1}, 0, 0, 9, 0, 0, 0, 1, {}};
    Handle pcep = Handle::null;
    ASSERT_EQ(node.pceps.create_pcep(params, pcep), Refusal::granted);
    EXPECT_EQ(node.send(9, {1, 64}), Refusal::granted);
    EXPECT_EQ(node.ebcom.counters()[Fate::sent].frames, 1U);
    const std::string picture = graph(node);
    EXPECT_NE(picture.find("straight to PCEP 1"), std::string::npos);
    EXPECT_EQ(between(picture, "no path leads", "there").size(), 1U) << "PCEP 3 alone";
}

TEST_F(Graph, AGroupsOwnSchedulerIsTiedToItByADashedLine)
{
    EXPECT_NE(
        graph(node).find("\"" + text_of(other_group) + "\":e -> \"" + text_of(left) + "\":w [style=dashed, dir=none]"),
        std::string::npos);
}

TEST_F(Graph, ManyPcepsAreCounted)
{
    for (std::uint32_t id = 4; id <= 299; ++id)
        add_pcep(id, id % 2 == 0 ? 1 : 99);
    const Handle of_the_last = add_group(302, Handle::null, {298, 299});
    const std::string picture = graph(node);
    EXPECT_EQ(between(picture, "<b>PCEP ", "</b>").size(), 24U);
    EXPECT_NE(picture.find("and 275 more"), std::string::npos);
    EXPECT_NE(picture.find("no path leads to those of 138"), std::string::npos);
    EXPECT_TRUE(leads(text_of(of_the_last), "further PCEPs"));
    EXPECT_TRUE(leads("further PCEPs", text_of(first)));
    EXPECT_EQ(between(picture, "\"further PCEPs\":\"remote\":e", "\n").size(), 1U);
    EXPECT_EQ(drawn(node).output.find("<?xml"), 0U);
}

TEST_F(Graph, ManyDestinationsMakeNoLargerPicture)
{
    const std::size_t before = graph(node).size();
    for (std::uint32_t number = 0; number < 10'000; ++number)
        ASSERT_EQ(
            node.create_path({{2, 0, 0, 3, static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)},
                              2,
                              0,
                              pointer_of(second)}),
            Refusal::granted);
    EXPECT_LT(graph(node).size(), before + 100);
    EXPECT_NE(graph(node).find("and 10,005 more"), std::string::npos);
}
