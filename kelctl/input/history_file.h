// Where lines that were typed are kept from one shell to the next.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// How many lines are kept.
inline constexpr int longest_history = 1000;

// $XDG_STATE_HOME/kelctl/history, or ~/.local/state/kelctl/history. Only a regular file of this user, which is created for
// its owner when nothing is there. Anything else under that name, a link included, is left alone; then nothing is kept.
class history_file
{
public:
    history_file();
    ~history_file(); // cuts it to the last lines
    history_file(const history_file &) = delete;
    history_file &operator=(const history_file &) = delete;

    // Why what is there is left alone, in one line; empty when it is not, and where there can be none.
    const std::string &refusal() const
    {
        return refusal_;
    }

    // The last lines, the newest at the end.
    std::vector<std::string> lines() const;

    void add(std::string_view line);

private:
    std::string text() const;

    int descriptor_ = -1; // none: nothing is kept
    std::string refusal_;
};

} // namespace kelctl
