/*
 * graph_boxes.cpp - the lines of each kind of box.
 */
#include "softnode/views/graph_boxes.h"

#include "softnode/common/facts.h"
#include "softnode/common/mac.h"
#include "text/quantity.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>

namespace softnode
{

namespace
{

/* Of what is in no column. */
constexpr const char *scheduler_accent = "#8a6116";
constexpr const char *neutral = "#55616d";

/* Points, so that boxes of a column look alike. */
constexpr unsigned pcep_width = 150;
constexpr unsigned queue_width = 180;

void add_destinations(DotBox &box, const Destinations &destinations)
{
    for (std::size_t line = 0; line < destinations.shown.size(); ++line)
        box.line({{text_of(destinations.shown[line]).data()}}, std::to_string(line));
    if (const std::size_t more = destinations.count - destinations.shown.size(); more != 0)
        box.line({{"and " + text::with_separators(more) + " more", Tone::faint}}, further_port);
}

void add_counters(DotBox &box, const Queue &queue)
{
    const std::uint64_t sent = queue.counters[Fate::sent].frames;
    const std::uint64_t dropped = queue.counters[Fate::dropped].frames;
    const std::uint64_t waiting = queue.waiting().frames;
    if (sent == 0 && dropped == 0 && waiting == 0)
        return;
    box.line({{text::with_separators(sent) + " sent, " + text::with_separators(waiting) + " waiting", Tone::faint},
              {dropped == 0 ? "" : ", " + text::with_separators(dropped) + " dropped", Tone::alarm}});
}

std::string rate_text(std::uint64_t rate)
{
    return text::separated_quantity_text(rate, text::rate_units);
}

std::string size_text(std::uint64_t octets)
{
    return text::separated_quantity_text(octets, text::size_units);
}

std::string hexadecimal(std::uint16_t number)
{
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%04x", number);
    return text.data();
}

} // namespace

DotBox group_box(Handle handle, const Group &group, const PcepsById &pceps)
{
    DotBox box(group_column.accent);
    box.title("Group " + std::to_string(group.id));
    box.line({{text_of(handle), Tone::faint}});
    if (group.members.empty())
        box.line({{"no members", Tone::faint}});
    for (const std::uint32_t member : group.members)
        if (!pceps.contains(member))
            box.line({{"PCEP " + std::to_string(member) + " does not exist", Tone::alarm}});
    return box;
}

DotBox pcep_box(Handle handle, const Pcep &pcep, const Words &way)
{
    DotBox box(pcep_column.accent, pcep_width);
    box.title("PCEP " + std::to_string(pcep.id()), text_of(handle));
    box.line({{"from ", Tone::faint}, {text_of(mac_at(pcep.params.sMac)).data()}});
    box.line({{"to ", Tone::faint}, {text_of(mac_at(pcep.params.dMac)).data()}}, remote_port);
    box.line({{"remote id " + std::to_string(pcep.remote_id()), Tone::faint}});
    box.line(
        {{"VLAN " + std::to_string(pcep.vlan_id()) + ", priority " + std::to_string(pcep.priority()), Tone::faint}});
    if (!way.text.empty())
        box.line({way});
    return box;
}

DotBox further_pceps_box(std::size_t count, std::size_t astray)
{
    DotBox box(pcep_column.accent, pcep_width);
    box.title("and " + text::with_separators(count) + " more");
    box.line({{"to their destinations", Tone::faint}}, remote_port);
    if (astray != 0)
        box.line({{"no path leads to those of " + text::with_separators(astray), Tone::alarm}});
    return box;
}

DotBox target_box(Handle handle)
{
    DotBox box(neutral);
    box.title("EHSFP");
    box.line({{text_of(handle), Tone::faint}});
    return box;
}

DotBox queue_box(Handle handle, const Queue &queue, const Destinations &destinations)
{
    DotBox box(queue_column.accent, queue_width);
    box.title(queue.shaped() ? rate_text(queue.rate) : "unshaped", text_of(handle));
    const std::string burst = queue.shaped() ? "burst " + size_text(queue.bucket_size) + ", " : "";
    box.line({{burst + "threshold " + size_text(queue.threshold), Tone::faint}});
    add_counters(box, queue);
    add_destinations(box, destinations);
    return box;
}

DotBox stranded_box(const Destinations &destinations)
{
    DotBox box(neutral, queue_width);
    box.title("without a queue");
    add_destinations(box, destinations);
    return box;
}

DotBox chain_box(const SchedulerChain &chain, const Registry<TreeScheduler> &schedulers)
{
    DotBox box(scheduler_accent);
    box.title(chain.size() == 1 ? "Scheduler" : "Chain of " + std::to_string(chain.size()));
    for (const Handle link : chain) {
        box.line({{text_of(link), Tone::faint}});
        const auto &[peak, last] = schedulers.at(link).params.qosRates;
        if (peak.rate != 0)
            box.line({{"peak " + rate_text(peak.rate)}});
        if (last.sustain.rate != 0)
            box.line({{"sustain " + rate_text(last.sustain.rate)}});
    }
    return box;
}

DotBox interface_box(const EbcomService &ebcom)
{
    DotBox box(neutral);
    box.title("Ethernet device " + std::to_string(ebcom.interface_device().value_or(facts::event_device)));
    box.line(
        {{ebcom.interface_device() ? "VSI " + std::to_string(facts::event_device_vsi) : "no interface", Tone::faint}});
    if (const auto &globals = ebcom.globals()) {
        box.line({{"MTU " + size_text(globals->icPortMTU), Tone::faint}});
        box.line({{"EtherType " + hexadecimal(globals->etherType), Tone::faint}});
        box.line({{"settings " + std::to_string(globals->nibbles & 0x0f) + ", " + std::to_string(globals->nibbles >> 4),
                   Tone::faint}});
    }
    if (const auto offset = ebcom.timestamp_offset())
        box.line({{"timestamp offset " + std::to_string(*offset), Tone::faint}});
    return box;
}

} // namespace softnode
