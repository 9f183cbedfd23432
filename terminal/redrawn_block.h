// Lines that are shown repeatedly: on a terminal each drawing replaces the one before, elsewhere it follows it.
//
//     redrawn_block block(stdout, is_terminal(stdout));
//     block.draw("queue  frames/s\nRLU1P      1000\n");
//     block.draw("queue  frames/s\nRLU1P      2000\n");
//     block.leave();
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace terminal
{

class redrawn_block
{
public:
    // `redrawn`: the stream is a terminal, and nothing else writes to it between two drawings. Does not own the stream.
    redrawn_block(std::FILE *stream, bool redrawn);

    // The text must end with a line end. On a terminal, lines longer than its width and lines below its height are cut.
    void draw(std::string_view text);

    // Ends the block: the next drawing starts below it. On a terminal a line end follows, because the cursor's line may
    // hold the "^C" that the terminal has echoed.
    void leave();

private:
    std::FILE *stream_;
    bool redrawn_;
    size_t drawn_ = 0; // lines
};

} // namespace terminal
