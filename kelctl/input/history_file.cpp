// Finding, creating and keeping the file.
#include "kelctl/input/history_file.h"

#include "kelctl/terminal/text.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

constexpr mode_t owner_only_folder = 0700;
constexpr mode_t owner_only_file = 0600;

// The value of a variable that names an absolute path; empty for any other.
std::filesystem::path path_in(const char *variable)
{
    const char *value = std::getenv(variable);
    const std::filesystem::path path = value ? value : "";
    return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path state_folder()
{
    if (auto state = path_in("XDG_STATE_HOME"); !state.empty())
        return state;
    const auto home = path_in("HOME");
    return home.empty() ? home : home / ".local" / "state";
}

// With all above it, as mkdir -p does.
bool make_folder(const std::filesystem::path &folder)
{
    std::error_code error;
    if (std::filesystem::is_directory(folder, error))
        return true;
    return folder.has_relative_path() && make_folder(folder.parent_path()) &&
           mkdir(folder.c_str(), owner_only_folder) == 0;
}

bool is_own_regular_file(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

} // namespace

// Neither waits for the other end of a pipe nor takes a terminal over.
history_file::history_file()
{
    const auto state = state_folder();
    if (state.empty() || !make_folder(state / "kelctl"))
        return;
    const auto file = state / "kelctl" / "history";
    constexpr int flags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    descriptor_ = open(file.c_str(), flags, owner_only_file);
    if (descriptor_ >= 0 && is_own_regular_file(descriptor_))
        return;
    refusal_ = fmt::format("{}: not a regular file that you own and may write; no history is kept",
                           without_controls(file.string()));
    close(std::exchange(descriptor_, -1));
}

history_file::~history_file()
{
    if (descriptor_ < 0)
        return;
    const std::string all = text();
    const std::string kept = joined(lines(), "\n");
    if (std::count(all.begin(), all.end(), '\n') > longest_history && ftruncate(descriptor_, 0) == 0)
        add(kept);
    close(descriptor_);
}

std::vector<std::string> history_file::lines() const
{
    std::istringstream all(text());
    std::vector<std::string> lines;
    for (std::string line; std::getline(all, line);)
        lines.push_back(line);
    const size_t older = lines.size() - std::min<size_t>(lines.size(), longest_history);
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(older));
    return lines;
}

void history_file::add(std::string_view line)
{
    const std::string ended = fmt::format("{}\n", line);
    // A line that finds no room is not kept.
    [[maybe_unused]] const ssize_t octets = write(descriptor_, ended.data(), ended.size());
}

// The last of it, where it is far longer than a history.
std::string history_file::text() const
{
    constexpr off_t longest = off_t{1024} * 1024;
    const off_t size = lseek(descriptor_, 0, SEEK_END);
    std::string text(static_cast<size_t>(std::clamp<off_t>(size, 0, longest)), '\0');
    const ssize_t got = pread(descriptor_, text.data(), text.size(), std::max<off_t>(size - longest, 0));
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return text;
}

} // namespace kelctl
