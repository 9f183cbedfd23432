// Lines that are drawn again and again: over each other on a terminal, one block after the other elsewhere.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace kelctl
{

class redrawn_block
{
public:
    // `redrawn` is for a terminal that nothing else writes to between two drawings.
    redrawn_block(std::FILE *stream, bool redrawn);

    // The text ends with a line end. On a terminal, lines that are too long or too many for it are cut.
    void draw(std::string_view text);

    // On a terminal an empty line follows, which the "^C" of a person may take. The next drawing is a new one.
    void leave();

private:
    std::FILE *stream_;
    bool redrawn_;
    size_t drawn_ = 0; // lines
};

} // namespace kelctl
