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

    // The system's error that ended the input; 0 when none did.
    int error() const
    {
        return error_;
    }

private:
    bool read_more();

    int descriptor_;
    std::string buffer_;
    int error_ = 0;
};

} // namespace kelctl
