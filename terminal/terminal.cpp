// Escape sequences and the questions to the system about a stream.
#include "terminal/terminal.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>

namespace terminal
{
namespace
{

// Escape sequences, indexed by role.
constexpr std::string_view begin_sequences[] = {"\x1b[1m", "\x1b[2m", "\x1b[1;31m"};
constexpr std::string_view end_sequence = "\x1b[0m";

// The errno of the first failed write to standard output, EPIPE when its reader is gone; 0 while none has failed. No
// lock: only the thread that carries commands out writes there.
int output_error = 0;

// Asks without waiting. poll() reports both conditions without being asked for them: POLLERR for a pipe that has no
// reader, POLLHUP for a terminal that was closed.
bool reader_is_gone()
{
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

bool write_all(std::FILE *stream, std::string_view text)
{
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size() && std::fflush(stream) == 0;
}

} // namespace

std::string painter::operator()(colour role, std::string_view text) const
{
    if (!colours_)
        return std::string(text);
    return fmt::format("{}{}{}", begin_sequences[static_cast<size_t>(role)], text, end_sequence);
}

bool is_terminal(std::FILE *stream)
{
    return isatty(fileno(stream)) == 1;
}

std::optional<size_t> line_width(std::FILE *stream)
{
    winsize size{};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return std::nullopt;
    return size.ws_col;
}

painter painter_for(std::FILE *stream)
{
    const char *refused = std::getenv("NO_COLOR");
    return painter(is_terminal(stream) && (refused == nullptr || *refused == '\0'));
}

// Asks whether the reader is gone instead of comparing errno with EPIPE: a write to a closed terminal fails with EIO.
void write(std::FILE *stream, std::string_view text)
{
    if (stream == stdout && output_error != 0)
        return;
    if (write_all(stream, text) || stream != stdout)
        return;
    const int error = errno;
    output_error = reader_is_gone() ? EPIPE : error;
}

bool output_lost()
{
    return output_error != 0 || reader_is_gone();
}

std::optional<std::string> output_failure()
{
    if (output_error == 0 || output_error == EPIPE)
        return std::nullopt;
    return std::generic_category().message(output_error);
}

} // namespace terminal
