// What a stream can show (lines redrawn, colours, a width), and whether anyone still reads standard output.
// All output of kelctl goes through write(). What the text says is decided elsewhere.
#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace terminal
{

// What a part of the text is. The escape sequence of each role is in terminal.cpp.
enum class colour { heading, faint, failure };

// Puts text in the colour of its role, or returns it unchanged:
//
//     write(stderr, painter_for(stderr)(colour::failure, "failed:"));
class painter
{
public:
    explicit painter(bool colours) : colours_(colours)
    {
    }

    bool colours() const
    {
        return colours_;
    }

    std::string operator()(colour role, std::string_view text) const;

private:
    bool colours_;
};

// True when the stream is a terminal: then lines may be redrawn and a person sees them at once.
bool is_terminal(std::FILE *stream);

// The columns of the terminal. None when the stream is not a terminal: then lines are not folded.
std::optional<size_t> line_width(std::FILE *stream);

// Paints when the stream is a terminal and the environment variable NO_COLOR is unset or empty.
painter painter_for(std::FILE *stream);

// Writes the text unchanged, and flushes. A failure does not stop the command: a lost report must not leave the node
// half configured. Once standard output cannot be written, nothing more is written there.
void write(std::FILE *stream, std::string_view text);

// True when nobody reads standard output any more: the other end of the pipe is closed, or a write has failed. Jobs
// that only produce output end then.
bool output_lost();

// Why standard output could not be written: "No space left on device". None when all was written, and none when the
// reader closed its end: it has read what it wanted, as `head` has.
std::optional<std::string> output_failure();

} // namespace terminal
