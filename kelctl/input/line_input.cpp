// Reading without missing an interruption.
#include "kelctl/input/line_input.h"

#include "kelctl/input/interruption.h"
#include "text/printable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace kelctl
{

// The last line may lack its end. An interruption discards what was read but not returned.
std::optional<std::string> line_input::next()
{
    while (buffer_.find('\n') == std::string::npos && read_more())
        continue;
    if (buffer_.empty() || interrupted())
        return std::nullopt;
    const size_t end = std::min(buffer_.find('\n'), buffer_.size());
    std::string line = buffer_.substr(0, end);
    buffer_.erase(0, end + 1);
    if (std::exchange(at_beginning_, false) && line.starts_with(text::byte_order_mark))
        line.erase(0, text::byte_order_mark.size());
    return line;
}

// Appends to the buffer. False when there is no more: see next().
bool line_input::read_more()
{
    if (!input_before_interruption(descriptor_))
        return false;
    std::array<char, 4096> chunk;
    const ssize_t got = read(descriptor_, chunk.data(), chunk.size());
    if (got < 0) // signals that are handled restart it
        error_ = errno;
    else
        buffer_.append(chunk.data(), static_cast<size_t>(got));
    return got > 0;
}

} // namespace kelctl
