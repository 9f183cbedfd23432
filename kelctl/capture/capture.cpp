// From libpcap's records to frames, and back. What the frames are replayed against is replay/.
#include "kelctl/capture/capture.h"

#include "kelctl/capture/pcap_library.h"
#include "kelctl/values/file_text.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

namespace kelctl
{
namespace
{

constexpr uint64_t second = 1'000'000'000;
constexpr int longest_record = 262'144; // octets, as programs that capture have it

using capture_file = std::unique_ptr<pcap_t, decltype(&pcap_close)>;

// The octet that is read next. A pipe has none. ftello() fails there; read_capture() refuses pipes first.
std::string offset_in(std::FILE *stream)
{
    return fmt::format("at octet {}", ftello(stream));
}

captured_frame frame_of(const pcap_pkthdr &header, const u_char *octets)
{
    const auto nanoseconds = static_cast<uint64_t>(header.ts.tv_usec); // as the file was opened to be read
    return {
        static_cast<uint64_t>(header.ts.tv_sec) * second + nanoseconds, header.len, {octets, octets + header.caplen}};
}

// The stream is the file's from then on, unless it is none.
capture_file opened(std::FILE *stream, std::string &why)
{
    std::array<char, PCAP_ERRBUF_SIZE> message{};
    const unsigned precision = PCAP_TSTAMP_PRECISION_NANO;
    capture_file file(libpcap().fopen_offline_with_tstamp_precision(stream, precision, message.data()),
                      libpcap().close);
    if (!file) {
        why = fmt::format("{}: {}", offset_in(stream), message.data());
        std::fclose(stream);
    }
    return file;
}

// The offset is taken in front of each record: behind a failure it would say where the reader gave up.
capture read_frames(pcap_t *file, std::FILE *stream)
{
    capture read;
    for (;;) {
        const std::string offset = offset_in(stream);
        pcap_pkthdr *header = nullptr;
        const u_char *octets = nullptr;
        const int got = libpcap().next_ex(file, &header, &octets);
        if (got == PCAP_ERROR)
            read.wrong = fmt::format("{}: {}", offset, libpcap().geterr(file));
        if (got != 1)
            return read;
        read.frames.push_back(frame_of(*header, octets));
    }
}

std::string name_of_link(int link)
{
    const char *name = libpcap().datalink_val_to_name(link);
    return name ? name : fmt::format("link type {}", link);
}

// Whether a file of this format has room for the time.
bool fits(const timed_frame &one)
{
    return one.time / second <= std::numeric_limits<uint32_t>::max();
}

void write_frame(pcap_dumper_t *out, const timed_frame &one)
{
    pcap_pkthdr header{};
    header.ts.tv_sec = static_cast<time_t>(one.time / second);
    header.ts.tv_usec = static_cast<suseconds_t>(one.time % second);
    header.caplen = static_cast<uint32_t>(one.frame->octets.size());
    header.len = one.frame->length;
    libpcap().dump(reinterpret_cast<u_char *>(out), &header, one.frame->octets.data());
}

} // namespace

// pcap_close() closes the stream; so does opened() when libpcap does not take it.
capture read_capture(const std::string &file)
{
    note_input(file);
    std::FILE *const stream = std::fopen(file.c_str(), "rbe");
    if (!stream || ftello(stream) < 0) {
        capture unread{.wrong = fmt::format("cannot be read: {}", std::strerror(errno))};
        if (stream)
            std::fclose(stream);
        return unread;
    }
    std::string why;
    const capture_file opened_file = opened(stream, why);
    if (!opened_file)
        return {.wrong = why};
    if (const int link = libpcap().datalink(opened_file.get()); link != DLT_EN10MB)
        return {.wrong = fmt::format("is a capture of {}, not of Ethernet", name_of_link(link))};
    return read_frames(opened_file.get(), stream);
}

// Made in memory first, so that write_file() decides how files are replaced here, too.
std::optional<std::string> write_capture(const std::string &file, std::span<const timed_frame> frames)
{
    if (!std::all_of(frames.begin(), frames.end(), fits))
        return "cannot be written: pcap holds no times after the year 2106";
    char *text = nullptr;
    size_t size = 0;
    std::FILE *const memory = open_memstream(&text, &size);
    const capture_file kind(
        libpcap().open_dead_with_tstamp_precision(DLT_EN10MB, longest_record, PCAP_TSTAMP_PRECISION_NANO),
        libpcap().close);
    pcap_dumper_t *const out = memory ? libpcap().dump_fopen(kind.get(), memory) : nullptr;
    if (!out)
        return fmt::format("cannot be written: {}", std::strerror(errno));
    for (const timed_frame &one : frames)
        write_frame(out, one);
    const bool whole = std::ferror(memory) == 0;
    libpcap().dump_close(out);
    const std::unique_ptr<char, void (*)(void *)> owned(text, std::free);
    return whole ? write_file(file, {text, size}) : "cannot be written: there is not enough memory";
}

} // namespace kelctl
