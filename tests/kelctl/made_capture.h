// Captures made octet by octet, with frames and times of a test's choice.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct made_frame {
    uint64_t time;       // nanoseconds since 1970
    std::string octets;  // that were captured
    uint32_t length = 0; // on the wire; 0: as many
};

inline constexpr uint32_t ethernet_link = 1;

// Little-endian.
template <typename Number> std::string octets_of(Number number)
{
    return {reinterpret_cast<const char *>(&number), sizeof number};
}

// So many octets for the last one of the addresses 02:00:00:02:00:xx; `tag` follows the addresses.
inline std::string frame_to(uint8_t last, size_t octets, const std::string &tag = "")
{
    std::string frame("\x02\x00\x00\x02\x00", 5);
    frame += static_cast<char>(last);
    frame += std::string("\x02\x00\x00\x02\x00\x63", 6) + tag;
    frame.resize(octets, static_cast<char>(last));
    return frame;
}

// A pcap file that counts parts of seconds in so many nanoseconds: 1 or 1,000.
inline std::string pcap_of(const std::vector<made_frame> &frames, uint32_t unit = 1, uint32_t link = ethernet_link)
{
    std::string text = octets_of(unit == 1 ? 0xa1b23c4dU : 0xa1b2c3d4U) + octets_of(uint16_t{2}) +
                       octets_of(uint16_t{4}) + octets_of(uint64_t{0}) + octets_of(262'144U) + octets_of(link);
    for (const made_frame &frame : frames) {
        const auto captured = static_cast<uint32_t>(frame.octets.size());
        text += octets_of(static_cast<uint32_t>(frame.time / 1'000'000'000)) +
                octets_of(static_cast<uint32_t>(frame.time % 1'000'000'000 / unit)) + octets_of(captured) +
                octets_of(frame.length ? frame.length : captured) + frame.octets;
    }
    return text;
}

inline std::string block_of(uint32_t type, std::string body)
{
    body.resize((body.size() + 3) / 4 * 4);
    const std::string length = octets_of(static_cast<uint32_t>(body.size() + 12));
    return octets_of(type) + length + body + length;
}

// A pcapng file with one interface, which counts time in nanoseconds (9) or microseconds (6).
inline std::string pcapng_of(const std::vector<made_frame> &frames, uint8_t digits = 9)
{
    const std::string resolution = octets_of(uint16_t{9}) + octets_of(uint16_t{1}) + octets_of(uint32_t{digits});
    std::string text = block_of(0x0a0d0d0a, octets_of(0x1a2b3c4dU) + octets_of(uint32_t{1}) + octets_of(~uint64_t{0})) +
                       block_of(1, octets_of(ethernet_link) + octets_of(262'144U) + resolution + octets_of(0U));
    for (const made_frame &frame : frames) {
        const auto captured = static_cast<uint32_t>(frame.octets.size());
        const uint64_t time = frame.time / (digits == 9 ? 1 : 1'000);
        text += block_of(6, octets_of(0U) + octets_of(static_cast<uint32_t>(time >> 32)) +
                                octets_of(static_cast<uint32_t>(time)) + octets_of(captured) +
                                octets_of(frame.length ? frame.length : captured) + frame.octets);
    }
    return text;
}
