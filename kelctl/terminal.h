// What a stream's reader can take: lines drawn over, colours.
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

// Writes text as it is. A reader that went away is not an error here: the node comes first.
void write(std::FILE *stream, std::string_view text);

} // namespace kelctl
