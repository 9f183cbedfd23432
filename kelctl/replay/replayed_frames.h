// Frames of a capture, each offered at its time and followed until it leaves or is dropped.
//
//     const capture read = read_capture("in.pcap");
//     const replayed all = replay_frames(read.frames, *current_snapshot());
//     show(all.frames[0].left - all.frames[0].entered);
#pragma once

#include "kelctl/accelerator/snapshot.h"
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/capture/capture.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kelctl
{

// Octets of a destination address: what has to be captured of each frame.
inline constexpr size_t destination_octets = 6;

// What became of the frames. Those that were not offered because of an interruption are missing at the end.
struct replayed {
    std::vector<frame_report> frames; // by their number, from 0; nanoseconds since the first one was offered
    std::vector<size_t> departures;   // numbers of those that left, in their order
    bool whole = false;               // not interrupted
};

// With its check sequence, which captures leave out.
uint64_t octets_of(const captured_frame &frame);

// From now on: the frames are in the order of their times. Time goes on until none of them waits any more, or for ever.
replayed replay_frames(std::span<const captured_frame> frames, const snapshot &node);

} // namespace kelctl
