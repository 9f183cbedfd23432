// Where lines that were typed are kept from one shell to the next.
#pragma once

#include <cstdio>
#include <deque>
#include <memory>
#include <string>

namespace kelctl
{

// How many lines are kept.
inline constexpr int longest_history = 1000;

// $XDG_STATE_HOME/kelctl/history, or ~/.local/state/kelctl/history. Only a regular file of this user, which is created for
// its owner when nothing is there. Anything else under that name, a link included, is left alone; then nothing is kept.
class history_file
{
public:
    history_file(); // cuts it to the last lines

    // Why what is there is left alone, in one line; empty when it is not, and where there can be none.
    const std::string &refusal() const
    {
        return refusal_;
    }

    // What it held when it was opened, the newest at the end.
    const std::deque<std::string> &lines() const
    {
        return lines_;
    }

    // A line that finds no room is not kept.
    void add(const std::string &line);

private:
    void read_lines();

    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file_{nullptr, std::fclose}; // none: nothing is kept
    std::deque<std::string> lines_;
    std::string refusal_;
};

} // namespace kelctl
