// Finding, creating and keeping the file.
#include "kelctl/input/history_file.h"

#include "terminal/terminal.h"
#include "text/printable.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <glib.h>
#include <sys/stat.h>
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

// Where a user's programs keep their state. Empty when neither variable says.
std::filesystem::path state_folder()
{
    if (auto state = path_in("XDG_STATE_HOME"); !state.empty())
        return state;
    const auto home = path_in("HOME");
    return home.empty() ? home : home / ".local" / "state";
}

bool is_own_regular_file(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

} // namespace

// O_NONBLOCK: opening a FIFO does not wait for its other end. O_NOCTTY: a terminal does not become this process's own.
// Where there can be no folder, nothing is reported.
history_file::history_file()
{
    const auto state = state_folder();
    if (state.empty() || g_mkdir_with_parents((state / "kelctl").c_str(), owner_only_folder) != 0)
        return;
    const auto file = state / "kelctl" / "history";
    constexpr int flags = O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const int descriptor = open(file.c_str(), flags, owner_only_file);
    if (descriptor >= 0 && is_own_regular_file(descriptor)) {
        file_.reset(fdopen(descriptor, "a+"));
        read_lines();
        return;
    }
    refusal_ = fmt::format("{}: not a regular file that you own and can write; the history is not saved",
                           text::without_controls(file.string()));
    close(descriptor);
}

// Shortens the file in place, as it is open: another shell may have it open, too, and appends go on to the same file.
void history_file::read_lines()
{
    char *line = nullptr;
    size_t room = 0;
    bool longer = false;
    for (ssize_t size = 0; (size = getline(&line, &room, file_.get())) > 0;) {
        lines_.emplace_back(line, static_cast<size_t>(line[size - 1] == '\n' ? size - 1 : size));
        longer = longer || lines_.size() > longest_history;
        if (lines_.size() > longest_history)
            lines_.pop_front();
    }
    std::free(line);
    if (longer && ftruncate(fileno(file_.get()), 0) == 0)
        terminal::write(file_.get(), text::joined(lines_, "\n") + "\n");
}

void history_file::add(const std::string &line)
{
    if (file_)
        terminal::write(file_.get(), line + "\n");
}

} // namespace kelctl
