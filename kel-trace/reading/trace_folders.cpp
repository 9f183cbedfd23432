// Searches folders for traces: a folder with a file "metadata" is one.
#include "kel-trace/reading/trace_folders.h"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace kel_trace
{
namespace fs = std::filesystem;

// Errors leave folders out: a recording often lies beside what its reader may not see.
std::vector<fs::path> trace_folders(const fs::path &folder)
{
    std::vector<fs::path> traces;
    std::error_code error;
    const auto add = [&](const fs::path &path) {
        if (fs::is_regular_file(path / "metadata", error))
            traces.push_back(path);
    };
    add(folder);
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
        if (std::error_code none; entry->is_directory(none))
            add(entry->path());
    std::ranges::sort(traces);
    return traces;
}

std::vector<fs::path> stream_files(const fs::path &trace)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(trace, error)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file(error) && name != "metadata" && !name.starts_with('.'))
            files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

bool is_newer_format(const fs::path &trace)
{
    std::ifstream metadata(trace / "metadata", std::ios::binary);
    const int first = metadata.get();
    return first == 0x1E || first == '{'; // a sequence of JSON texts
}

} // namespace kel_trace
