// Captures of real traffic, sent through a node.
#include "kelctl/commands/commands.h"
#include "kelctl/replay/replay.h"

namespace kelctl
{
namespace
{

constexpr std::string_view replay_details =
    R"(The node is brought up, and taken down afterwards. A frame's destination MAC
address chooses its path, its time in the capture when it is offered. The file
of --out gets the frames that left, with the times at which they did, as pcap
with nanoseconds. Streams of the file's [[traffic]] tables are not offered.

pcap and pcapng with Ethernet frames are read, through libpcap. A frame counts
with its whole length, also where the capture has only its beginning, and with
a check sequence of 4 octets, which captures leave out. What is read is checked
before anything starts; what is written replaces a file once it is complete.)";

std::optional<objection> check_files(const arguments &given)
{
    if (given.has("--dropped") && given.text("--dropped") == given.text("--out"))
        return objection{"--dropped", "is the file of --out"};
    return std::nullopt;
}

} // namespace

std::vector<command> replay_commands()
{
    return {
        {.name = "traffic replay",
         .variants = {{.run = replay}},
         .help = "Send a capture through a node, in virtual time",
         .details = replay_details,
         .arguments = {{.name = "FILE", .kind = kind::file(), .help = "node file (TOML)"},
                       {.name = "CAPTURE", .kind = kind::file(), .help = "frames to offer (pcap, pcapng)"},
                       {.name = "--out", .kind = kind::file(), .help = "write the frames that left there"},
                       {.name = "--dropped",
                        .kind = kind::file(),
                        .help = "write those there that did not leave, with the times at which they came",
                        .required = false},
                       {.name = "--plot",
                        .kind = kind::file(),
                        .help = "draw rate, backlog and delay of the queues there (SVG); needs gnuplot",
                        .required = false},
                       {.name = "--sort",
                        .kind = kind::flag(),
                        .help = "put frames in the order of their times; else going back is an error"}},
         .check = check_files,
         .example = "traffic replay node.toml in.pcap --out out.pcap",
         .sources = {source::program},
         .needs_accelerator = true},
    };
}

} // namespace kelctl
