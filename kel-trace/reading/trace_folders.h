// The traces of a recording: a session's folder holds one for each user, process or snapshot, a relay daemon's one
// folder of sessions for each host.
#pragma once

#include <filesystem>
#include <vector>

namespace kel_trace
{

// Every folder with a file `metadata`, the given one among them, by name. Folders that cannot be read have none.
std::vector<std::filesystem::path> trace_folders(const std::filesystem::path &folder);

// What may be a stream of this trace: its files, but the metadata and hidden ones.
std::vector<std::filesystem::path> stream_files(const std::filesystem::path &trace);

// Whether the metadata is of the format that came after CTF 1.8.
bool is_newer_format(const std::filesystem::path &trace);

} // namespace kel_trace
