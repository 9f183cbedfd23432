// Rows of virtual traffic: frames offered at once, and streams that pass with virtual time. Captures are in
// commands_replay.cpp. When the frames of a stream come is accelerator/traffic_schedule.cpp; a stream is no object of
// the node, and nothing undoes it.
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/session/session.h"
#include "kelctl/values/limits.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace kelctl
{
namespace
{

constexpr range frames_range = {0, 1'000'000'000, "0 to 1000000000"};

std::vector<argument> with_frames(argument whom)
{
    return {std::move(whom),
            {.name = "--frames", .kind = kind::number(frames_range), .help = "number of frames"},
            {.name = "--octets", .kind = kind::number(frame_length_range), .help = "length of each frame"}};
}

result offer(const invocation &asked, session &)
{
    const mac_address &mac = asked.given.mac("MAC");
    if (offer_frames(mac, asked.given.number<uint64_t>("--frames"), asked.given.number<uint32_t>("--octets")) ==
        offered::unknown)
        return refused(fmt::format("no path and no PCEP has the address {}", to_text(mac)));
    return {};
}

result send(const invocation &asked, session &)
{
    const uint32_t id = asked.given.number<uint32_t>("ID");
    if (send_frames(id, asked.given.number<uint64_t>("--frames"), asked.given.number<uint32_t>("--octets")) ==
        offered::unknown)
        return refused(fmt::format("no PCEP and no multicast group has the id {}", id));
    return {};
}

// Of --to and --from, and of the two rates, exactly one was given: the row's arguments say so (`.instead`).
traffic_entry stream_of(const arguments &given)
{
    traffic_entry stream;
    if (given.has("--to"))
        stream.to = given.mac("--to");
    else
        stream.from = given.number<uint32_t>("--from");
    stream.octets = given.number<uint32_t>("--octets");
    if (given.has("--rate"))
        stream.rate = given.number<uint32_t>("--rate");
    else
        stream.frames_per_second = given.number<uint32_t>("--frames-per-second");
    stream.burst = given.number<uint32_t>("--burst");
    stream.start = given.number<uint64_t>("--start");
    if (given.has("--stop"))
        stream.stop = given.number<uint64_t>("--stop");
    stream.spread =
        static_cast<arrivals>(std::ranges::find(arrival_words, given.text("--arrivals")) - arrival_words.begin());
    stream.seed = given.number<uint32_t>("--seed");
    if (given.has("--on"))
        stream.on = given.number<uint64_t>("--on");
    if (given.has("--off"))
        stream.off = given.number<uint64_t>("--off");
    return stream;
}

std::optional<objection> check_stream(const arguments &given)
{
    const traffic_entry stream = stream_of(given);
    if (offerings_in_a_second(stream) > most_offerings_a_second)
        return objection{given.has("--rate") ? "--rate" : "--frames-per-second",
                         fmt::format("more than {} frames or bursts per second; larger bursts reduce them",
                                     most_offerings_a_second)};
    if (stream.stop && *stream.stop <= stream.start)
        return objection{"--stop", "is not later than the start"};
    if (!periods_fit(stream))
        return objection{"--arrivals", "--on and --off are required with on-off, and only with it"};
    return std::nullopt;
}

result add_stream(const invocation &asked, session &session)
{
    session.traffic.add(stream_of(asked.given));
    return {};
}

std::vector<argument> arguments_of_a_stream()
{
    return {
        {.name = "--to", .kind = kind::mac(), .help = "destination address", .instead = "--from"},
        {.name = "--from",
         .kind = kind::pcep_or_group_id(),
         .help = "id of the sending PCEP or group",
         .instead = "--to"},
        {.name = "--octets", .kind = kind::number(frame_length_range), .help = "length of each frame"},
        {.name = "--rate", .kind = kind::rate(), .help = "rate of the stream", .instead = "--frames-per-second"},
        {.name = "--frames-per-second",
         .kind = kind::number(frames_per_second_range),
         .help = "rate of the stream in frames",
         .instead = "--rate"},
        {.name = "--burst",
         .kind = kind::number(burst_frames_range),
         .help = "frames per burst; the rate stays the same",
         .otherwise = "1"},
        {.name = "--start",
         .kind = kind::duration(duration_range),
         .help = "when the stream starts",
         .otherwise = "0s"},
        {.name = "--stop",
         .kind = kind::duration(period_range),
         .help = "when the stream ends (default never)",
         .required = false},
        {.name = "--arrivals",
         .kind = kind::choice({arrival_words.begin(), arrival_words.end()}),
         .help = "evenly spaced, random, or in on and off periods",
         .otherwise = "constant"},
        {.name = "--seed", .kind = kind::number(dword_range), .help = "seed of the random times", .otherwise = "1"},
        {.name = "--on", .kind = kind::duration(period_range), .help = "mean length of an on period", .needs = "--off"},
        {.name = "--off",
         .kind = kind::duration(period_range),
         .help = "mean length of an off period",
         .needs = "--on"}};
}

} // namespace

std::vector<command> traffic_commands()
{
    return {
        {.name = "traffic offer",
         .variants = {{.run = offer}},
         .help = "Offer frames for a destination, all at the current virtual time",
         .details = "Frames enter the queue of the destination's path and leave it as time advances.",
         .arguments = with_frames({.name = "MAC", .kind = kind::mac(), .help = "destination address"}),
         .example = "traffic offer 02:00:02:02:00:01 --frames 1000 --octets 1500",
         .needs_accelerator = true},
        {.name = "traffic send",
         .variants = {{.run = send}},
         .help = "Send frames from a PCEP or a multicast group",
         .details = "A PCEP sends to its remote address, a group to that of each member.",
         .arguments = with_frames({.name = "ID", .kind = kind::pcep_or_group_id(), .help = "id of the PCEP or group"}),
         .example = "traffic send 300 --frames 10 --octets 64",
         .needs_accelerator = true},
        {.name = "traffic stream add",
         .variants = {{.run = add_stream}},
         .help = "Offer a stream of frames while virtual time passes",
         .details = "Times are relative to the moment at which the stream is added.",
         .arguments = arguments_of_a_stream(),
         .check = check_stream,
         .example = "traffic stream add --to 02:00:02:02:00:01 --octets 1500 --rate 60Mbit/s",
         .needs_accelerator = true},
    };
}

} // namespace kelctl
