// Running a program as a child process, and what may become of it.
#include "kelctl/accelerator/drawing_program.h"

#include "text/printable.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstring>
#include <gio/gio.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace kelctl
{
namespace
{

// A file in memory with this text, to be read from its beginning; -1, with errno telling why, when there is no room for
// it. A program that ends before it has read all of it ends no pipe.
int file_in_memory(std::string_view text)
{
    const int file = memfd_create("kelctl-picture", MFD_CLOEXEC);
    if (file < 0 || (pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size())))
        return file;
    close(file);
    return -1;
}

std::string text_in(GBytes *bytes)
{
    size_t size = 0;
    const void *data = g_bytes_get_data(bytes, &size);
    return size == 0 ? "" : std::string(static_cast<const char *>(data), size);
}

// How a program ended that did not succeed.
std::string end_of(GSubprocess *program, GBytes *told)
{
    if (!g_subprocess_get_if_exited(program))
        return fmt::format("ended by signal {}", g_subprocess_get_term_sig(program));
    std::string text = text_in(told);
    text.erase(text.find_last_not_of('\n') + 1);
    return text.empty() ? fmt::format("exit status {}", g_subprocess_get_exit_status(program)) : text::printable(text);
}

std::string not_installed(const drawing_program &program)
{
    return fmt::format("{} is not installed{}", program.title, program.instead);
}

} // namespace

std::optional<std::string> missing(const drawing_program &program)
{
    const g_autofree char *found = g_find_program_in_path(program.name);
    return found ? std::nullopt : std::optional(not_installed(program));
}

// The program is looked for by being run: one that was there a moment ago may be gone. A picture counts only from a
// program that succeeded, as a half one is a file that opens.
drawing drawn_by(const drawing_program &program, const std::string &argument, const std::string &input)
{
    const int text = file_in_memory(input);
    if (text < 0)
        return {"", fmt::format("the graph cannot be passed to {}: {}", program.title, std::strerror(errno))};
    constexpr int read_both = G_SUBPROCESS_FLAGS_STDOUT_PIPE | G_SUBPROCESS_FLAGS_STDERR_PIPE;
    g_autoptr(GSubprocessLauncher) launcher = g_subprocess_launcher_new(static_cast<GSubprocessFlags>(read_both));
    g_subprocess_launcher_take_stdin_fd(launcher, text);

    g_autoptr(GError) error = nullptr;
    g_autoptr(GSubprocess) child =
        g_subprocess_launcher_spawn(launcher, &error, program.name, argument.c_str(), nullptr);
    if (!child && g_error_matches(error, G_SPAWN_ERROR, G_SPAWN_ERROR_NOENT))
        return {"", not_installed(program)};
    if (!child)
        return {"", fmt::format("{} cannot be run: {}", program.title, error->message)};

    g_autoptr(GBytes) picture = nullptr;
    g_autoptr(GBytes) told = nullptr;
    if (!g_subprocess_communicate(child, nullptr, nullptr, &picture, &told, &error))
        return {"", fmt::format("the picture of {} cannot be read: {}", program.title, error->message)};
    if (!g_subprocess_get_successful(child))
        return {"", fmt::format("{} failed: {}", program.title, end_of(child, told))};
    if (g_bytes_get_size(picture) == 0)
        return {"", fmt::format("{} returned no picture", program.title)};
    return {text_in(picture), ""};
}

} // namespace kelctl
