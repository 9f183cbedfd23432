// The file that keeps typed lines from one shell to the next. Moving through them is line_editor.h.
#pragma once

#include <cstdio>
#include <deque>
#include <memory>
#include <string>

namespace kelctl
{

// How many lines are kept.
inline constexpr int longest_history = 1000;

// $XDG_STATE_HOME/kelctl/history, or ~/.local/state/kelctl/history: a regular file of this user, created with mode
// 0600. Anything else of that name, a symbolic link included, is left unchanged, and no history is kept: typed lines
// must not end in somebody else's file.
class history_file
{
public:
    history_file(); // reads the file, and shortens it to longest_history lines

    // Why no history is kept, in one line for the user. Empty when it is kept, and when there is no folder for it.
    const std::string &refusal() const
    {
        return refusal_;
    }

    // The file's lines when it was opened, the newest last.
    const std::deque<std::string> &lines() const
    {
        return lines_;
    }

    // Appends a line. A line that cannot be written is lost without a message: history is a convenience.
    void add(const std::string &line);

private:
    void read_lines();

    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file_{nullptr, std::fclose}; // none: nothing is kept
    std::deque<std::string> lines_;
    std::string refusal_;
};

} // namespace kelctl
