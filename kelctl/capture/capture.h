// Captured frames and the files that hold them: pcap and pcapng are read, pcap with nanoseconds is written. Only those
// of Ethernet.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelctl
{

struct captured_frame {
    uint64_t time;               // nanoseconds since 1970
    uint32_t length;             // octets on the wire, without the check sequence
    std::vector<uint8_t> octets; // those that were captured: the first ones of them
};

// The frames in front of what is wrong are there.
struct capture {
    std::vector<captured_frame> frames = {}; // in the order of the file
    std::optional<std::string> wrong = {}; // why the file cannot be read, with the offset: "at octet 24: truncated ..."
};

// All of a file; it is an input of this run from then on (file_text.h).
capture read_capture(const std::string &file);

// A frame as it is to be written: at a time of its own.
struct timed_frame {
    const captured_frame *frame;
    uint64_t time;
};

// Writes a file anew, as write_file() does. Why it cannot be done; none when it was.
std::optional<std::string> write_capture(const std::string &file, std::span<const timed_frame> frames);

} // namespace kelctl
