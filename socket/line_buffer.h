// What a peer sends, cut into lines.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sockets
{

class line_buffer
{
public:
    // `longest`: octets of a line, without its end.
    explicit line_buffer(size_t longest);

    void append(std::string_view received);

    // Takes the first line, without its end; none while it is not complete.
    std::optional<std::string> take_line();

    bool has_line() const;

    // The first line is longer than it may be, complete or not.
    bool too_long() const;

    bool empty() const;

private:
    size_t longest_;
    std::string text_;
    size_t end_ = std::string::npos; // of the first line
};

} // namespace sockets
