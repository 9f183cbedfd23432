// The escape sequences that move the cursor back over the last drawing.
#include "terminal/redrawn_block.h"

#include "terminal/terminal.h"

#include <fmt/core.h>

#include <string>
#include <sys/ioctl.h>
#include <utility>

namespace terminal
{
namespace
{

// A long line must not wrap: the cursor moves up by the number of lines, and a wrapped one would count as two.
constexpr std::string_view wrapping_off = "\x1b[?7l";
constexpr std::string_view wrapping_on = "\x1b[?7h";
// Written before the line: after one that fills the width, the cursor is still on its last character and would erase
// it.
constexpr std::string_view line_erased = "\x1b[K";
constexpr std::string_view rest_of_screen_erased = "\x1b[J";

constexpr size_t any_height = 1'000'000;

// One less than the height: the cursor needs a line, too.
size_t lines_that_fit(std::FILE *stream)
{
    winsize size{};
    if (ioctl(fileno(stream), TIOCGWINSZ, &size) != 0 || size.ws_row < 2)
        return any_height;
    return size.ws_row - size_t{1};
}

} // namespace

redrawn_block::redrawn_block(std::FILE *stream, bool redrawn) : stream_(stream), redrawn_(redrawn)
{
}

// One write for the whole drawing: between two, the terminal would show it half erased. The height is asked for each
// time, because a window changes its size while a view runs.
void redrawn_block::draw(std::string_view text)
{
    if (!redrawn_) {
        write(stream_, fmt::format("{}\n", text));
        return;
    }
    std::string drawing(wrapping_off);
    if (drawn_ > 0)
        drawing += fmt::format("\x1b[{}A", drawn_);
    const size_t most = lines_that_fit(stream_);
    for (drawn_ = 0; !text.empty() && drawn_ < most; ++drawn_) {
        const size_t end = text.find('\n');
        drawing += fmt::format("{}{}\n", line_erased, text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    write(stream_, fmt::format("{}{}{}", drawing, rest_of_screen_erased, wrapping_on));
}

void redrawn_block::leave()
{
    if (std::exchange(drawn_, 0) > 0)
        write(stream_, "\n");
}

} // namespace terminal
