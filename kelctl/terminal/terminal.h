// What a stream's reader can take: lines drawn over, colours; and whether there is one still.
#pragma once

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

enum class colour { heading, faint, failure };

// Paints text, or leaves it as it is.
class painter
{
public:
    explicit painter(bool colours) : colours_(colours)
    {
    }

    std::string operator()(colour role, std::string_view text) const;

private:
    bool colours_;
};

bool is_terminal(std::FILE *stream);

// How many characters a line of the terminal takes; none elsewhere, where lines are as long as what they say.
std::optional<size_t> line_width(std::FILE *stream);

// Colours on a terminal, unless the environment variable NO_COLOR says something.
painter painter_for(std::FILE *stream);

// Writes text as it is. The node comes first: when standard output cannot be written, nothing more is written there,
// and the command goes on.
void write(std::FILE *stream, std::string_view text);

// Whether standard output reaches nobody any more: its reader is gone, or it cannot be written. What would go on for
// its reader only ends then.
bool output_lost();

// Why standard output could not be written: "No space left on device". None when all was written, nor when the reader
// went away, which has read what it wanted.
std::optional<std::string> output_failure();

} // namespace kelctl
