// Finding and creating the file.
#include "kelctl/history_file.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

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

} // namespace

std::string history_file()
{
    const auto state = state_folder();
    if (state.empty() || !make_folder(state / "kelctl"))
        return "";
    const auto file = state / "kelctl" / "history";
    const int descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, owner_only_file);
    if (descriptor < 0)
        return "";
    close(descriptor);
    return file;
}

} // namespace kelctl
