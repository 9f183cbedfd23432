// Lines from where nobody types: a pipe or a file.
#pragma once

#include <optional>
#include <string>

namespace kelctl
{

class line_input
{
public:
    // Does not own the descriptor.
    explicit line_input(int descriptor) : descriptor_(descriptor)
    {
    }

    // The next line without its end. None at the end of the input, and once an interruption is noted.
    std::optional<std::string> next();

private:
    bool wait_for_input() const;
    bool read_more();

    int descriptor_;
    std::string buffer_;
};

} // namespace kelctl
