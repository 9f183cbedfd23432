// Lines from a pipe or a file, for a shell without a terminal. Typed lines are line_editor.h.
//
//     line_input input(STDIN_FILENO);
//     while (const auto line = input.next())
//         run(*line);
// Not for whole files: those are values/file_text.h.
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

    // The next line without its end, and of the first one without a byte-order mark. None at the end of the input,
    // after a read error, and once a signal is recorded (interruption.h).
    std::optional<std::string> next();

    // The errno of the read that failed; 0: none has.
    int error() const
    {
        return error_;
    }

private:
    bool read_more();

    int descriptor_;
    std::string buffer_;
    int error_ = 0;
    bool at_beginning_ = true;
};

} // namespace kelctl
