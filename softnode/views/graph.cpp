/*
 * graph.cpp - the columns of the picture, from the left, and the edges between their boxes.
 */
#include "softnode/views/graph.h"

#include "softnode/common/mac.h"
#include "softnode/views/graph_boxes.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace softnode
{

namespace
{

/* Boxes of objects that have no handle. */
constexpr const char *stranded_name = "without a queue";
constexpr const char *interface_name = "interface";
constexpr const char *further_pceps_name = "further PCEPs";

/* Beyond these, PCEPs are only counted: a picture of hundreds shows nothing any more. */
constexpr std::size_t most_pceps_shown = 24;

/* In the order of creation, which is that of the handles. */
Handle last_shown(const Registry<Pcep> &pceps)
{
    if (pceps.size() == 0)
        return Handle::null;
    return std::next(pceps.begin(), static_cast<std::ptrdiff_t>(std::min(pceps.size(), most_pceps_shown) - 1))->first;
}

class Picture
{
public:
    explicit Picture(const Node &node)
        : node_(node), destinations_(destinations_of(node)), pceps_(pceps_by_id(node.pceps)),
          last_pcep_shown_(last_shown(node.pceps.pceps())), chains_(scheduler_chains(node))
    {
    }

    std::string draw()
    {
        draw_groups();
        draw_pceps();
        draw_queues();
        draw_schedulers();
        dot_.box(interface_name, interface_box(node_.ebcom));
        lead_from_groups();
        lead_from_pceps();
        lead_from_queues();
        lead_from_schedulers();
        return dot_.text();
    }

private:
    void draw_groups()
    {
        dot_.open(group_column);
        for (const auto &[handle, group] : node_.pceps.groups())
            dot_.box(text_of(handle), group_box(handle, group, pceps_));
        dot_.close();
    }

    void draw_pceps()
    {
        dot_.open(pcep_column);
        std::size_t astray = 0; /* of those that are not shown */
        for (const auto &[handle, pcep] : node_.pceps.pceps())
            if (handle <= last_pcep_shown_)
                dot_.box(text_of(handle), pcep_box(handle, pcep, way_of(pcep)));
            else if (!node_.leads_to(pcep.remote_mac()))
                ++astray;
        if (const std::size_t count = node_.pceps.pceps().size(); count > most_pceps_shown)
            dot_.box(further_pceps_name, further_pceps_box(count - most_pceps_shown, astray));
        dot_.close();
        if (anything_bound())
            dot_.box(target(), target_box(node_.attachment.ehsfp_target()));
    }

    void draw_queues()
    {
        dot_.open(queue_column);
        for (const auto &[handle, queue] : node_.qos.queues())
            dot_.box(text_of(handle), queue_box(handle, queue, destinations_.at(handle)));
        if (const auto stranded = destinations_.find(Handle::null); stranded != destinations_.end())
            dot_.box(stranded_name, stranded_box(stranded->second));
        dot_.close();
    }

    /* In no column, so that each can be beside its queues. */
    void draw_schedulers()
    {
        for (const SchedulerChain &chain : chains_)
            dot_.box(text_of(chain.front()), chain_box(chain, node_.qos.schedulers()));
    }

    void lead_from_groups()
    {
        for (const auto &[handle, group] : node_.pceps.groups()) {
            for (const std::uint32_t member : group.members)
                if (const auto pcep = pceps_.find(member); pcep != pceps_.end())
                    dot_.edge({text_of(handle)}, {box_of_pcep(pcep->second)});
            if (group.scheduler != Handle::null)
                dot_.edge({text_of(handle)}, end_at(group.scheduler), DotLine::dashed); /* frames do not go there */
        }
    }

    void lead_from_pceps()
    {
        for (const auto &[handle, pcep] : node_.pceps.pceps()) {
            if (const Path *path = path_of(pcep))
                dot_.edge({box_of_pcep(handle), remote_port}, end_at(mac_at(pcep.params.dMac), node_.queue_of(*path)));
            if (pcep.target != Handle::null)
                dot_.edge({target()}, {box_of_pcep(handle)}, DotLine::dashed);
        }
    }

    void lead_from_queues()
    {
        for (const auto &[handle, queue] : node_.qos.queues())
            dot_.edge({text_of(handle)}, end_at(queue.scheduler), DotLine::short_arrow);
    }

    void lead_from_schedulers()
    {
        for (const SchedulerChain &chain : chains_) {
            const Handle parent = node_.qos.schedulers().at(chain.front()).parent;
            dot_.edge({text_of(chain.front())}, parent == Handle::null ? DotEnd{interface_name} : end_at(parent));
        }
    }

    std::string box_of_pcep(Handle pcep) const
    {
        return pcep <= last_pcep_shown_ ? text_of(pcep) : further_pceps_name;
    }

    bool anything_bound() const
    {
        const auto &pceps = node_.pceps.pceps();
        return std::any_of(pceps.begin(), pceps.end(),
                           [](const auto &entry) { return entry.second.target != Handle::null; });
    }

    /* Null when no path leads to a PCEP's remote address. */
    const Path *path_of(const Pcep &pcep) const
    {
        const auto path = node_.ebcom.paths().find(mac_at(pcep.params.dMac));
        return path == node_.ebcom.paths().end() ? nullptr : &path->second;
    }

    /* The label of the way to a PCEP's remote address if it is not a path. */
    Words way_of(const Pcep &pcep) const
    {
        if (path_of(pcep))
            return {};
        const Handle receiver = node_.pceps.at_local(pcep.remote_mac());
        if (receiver == Handle::null)
            return {"no path leads there", Tone::alarm};
        return {"straight to PCEP " + std::to_string(node_.pceps.pceps().at(receiver).id()), Tone::faint};
    }

    DotEnd end_at(const Mac &mac, Handle queue) const
    {
        const auto line = destinations_.at(queue).line_of(mac);
        return {queue == Handle::null ? stranded_name : text_of(queue), line ? std::to_string(*line) : further_port};
    }

    /* Whatever hangs on a chain hangs on its last scheduler. */
    DotEnd end_at(Handle scheduler) const
    {
        const auto chain = std::find_if(chains_.begin(), chains_.end(),
                                        [scheduler](const SchedulerChain &links) { return links.back() == scheduler; });
        return {text_of(chain->front())};
    }

    std::string target() const
    {
        return text_of(node_.attachment.ehsfp_target());
    }

    const Node &node_;
    const std::map<Handle, Destinations> destinations_;
    const PcepsById pceps_;
    const Handle last_pcep_shown_;
    const std::vector<SchedulerChain> chains_;
    DotDocument dot_;
};

} // namespace

std::string graph(const Node &node)
{
    return Picture(node).draw();
}

} // namespace softnode
