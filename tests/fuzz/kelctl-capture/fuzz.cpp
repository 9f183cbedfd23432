// Any octets as a capture: read, and what could be read is the same when it is written and read again.
#include "kelctl/capture/capture.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{

using namespace kelctl;

// A file of this process's own, which is gone at its end.
struct own_file {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / ("capture-" + std::to_string(getpid()));

    ~own_file()
    {
        std::filesystem::remove(path);
    }
};

bool equal(const captured_frame &one, const captured_frame &other)
{
    return one.time == other.time && one.length == other.length && one.octets == other.octets;
}

void expect(bool true_fact)
{
    if (!true_fact)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    static const own_file file;
    std::ofstream(file.path, std::ios::binary).write(reinterpret_cast<const char *>(octets), static_cast<long>(count));
    const capture read = read_capture(file.path);
    expect(read.frames.size() <= count / 16); // a record has at least so many octets

    std::vector<timed_frame> frames;
    for (const captured_frame &one : read.frames)
        frames.push_back({&one, one.time});
    if (write_capture(file.path, frames))
        return 0; // a time that the format has no room for
    const capture again = read_capture(file.path);
    expect(!again.wrong && std::ranges::equal(again.frames, read.frames, equal));
    return 0;
}
