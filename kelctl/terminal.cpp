// Escape sequences and the questions to the system about a stream.
#include "kelctl/terminal.h"

#include <fmt/format.h>

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kelctl
{
namespace
{

// Escape sequences, indexed by role.
constexpr std::string_view begin_sequences[] = {"\x1b[1m", "\x1b[2m", "\x1b[1;31m"};
constexpr std::string_view end_sequence = "\x1b[0m";

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

void write(std::FILE *stream, std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

} // namespace kelctl
