// The row of "traffic replay". The job itself is in kelctl/replay.
#include "kelctl/commands/commands.h"
#include "kelctl/replay/replay.h"

namespace kelctl
{
namespace
{

constexpr std::string_view replay_details =
    R"(Brings the node up, offers the frames, and takes the node down. A frame's
destination MAC address selects its path, its time in the capture is when it is
offered. --out is a pcap file with nanoseconds; it contains the frames that were
sent, with the times at which they were sent. The file's [[traffic]] tables are
ignored.

Reads Ethernet frames from pcap and pcapng, through libpcap. The length of a
frame is its original length, even if the capture has only its beginning, plus a
check sequence of 4 octets, which captures leave out. Both input files are
checked before the node starts. Output files are replaced once complete.)";

std::optional<objection> check_files(const arguments &given)
{
    if (given.has("--dropped") && given.text("--dropped") == given.text("--out"))
        return objection{"--dropped", "is the same file as --out"};
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
                       {.name = "--out",
                        .kind = kind::new_file(),
                        .help = "write the frames that were sent to this file"},
                       {.name = "--dropped",
                        .kind = kind::new_file(),
                        .help = "write the other frames, with their original times, to this file",
                        .required = false},
                       {.name = "--plot",
                        .kind = kind::new_file(),
                        .help = "plot rate, backlog and delay of the queues to this file (SVG); requires gnuplot",
                        .required = false},
                       {.name = "--sort",
                        .kind = kind::flag(),
                        .help = "sort frames by time; without it, a frame out of order is an error"}},
         .check = check_files,
         .example = "traffic replay node.toml in.pcap --out out.pcap",
         .sources = {source::program},
         .needs_accelerator = true,
         .carried_out = executor::nobody},
    };
}

} // namespace kelctl
