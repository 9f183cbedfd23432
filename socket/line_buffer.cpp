// The end of the first line is found once, however many pieces it comes in.
#include "socket/line_buffer.h"

#include <algorithm>

namespace sockets
{

line_buffer::line_buffer(size_t longest) : longest_(longest)
{
}

void line_buffer::append(std::string_view received)
{
    const size_t before = text_.size();
    text_ += received;
    if (!has_line())
        end_ = text_.find('\n', before);
}

std::optional<std::string> line_buffer::take_line()
{
    if (!has_line())
        return std::nullopt;
    std::string line = text_.substr(0, end_);
    text_.erase(0, end_ + 1);
    end_ = text_.find('\n');
    return line;
}

bool line_buffer::has_line() const
{
    return end_ != std::string::npos;
}

bool line_buffer::too_long() const
{
    return std::min(end_, text_.size()) > longest_;
}

bool line_buffer::empty() const
{
    return text_.empty();
}

} // namespace sockets
