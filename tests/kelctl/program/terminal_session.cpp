// A pseudo terminal that is the program's controlling one, so that Ctrl-C is a signal.
#include "terminal_session.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using clock_type = std::chrono::steady_clock;
constexpr std::chrono::seconds time_limit(120);

} // namespace

terminal_session::terminal_session(const program_run &run, unsigned short columns)
{
    const winsize size = {.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    int programs_end = -1;
    std::array<char, 64> name{};
    EXPECT_EQ(openpty(&terminal_, &programs_end, name.data(), nullptr, &size), 0);
    program_ = spawn_on_terminal(run, name.data(), terminal_);
    close(programs_end);
}

terminal_session::~terminal_session()
{
    if (program_ > 0) {
        kill(program_, SIGKILL);
        waitpid(program_, nullptr, 0);
    }
    close(terminal_);
}

void terminal_session::type(const std::string &keys)
{
    EXPECT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

void terminal_session::send(int signal)
{
    kill(program_, signal);
}

std::string terminal_session::wait_for(const std::string &text)
{
    const auto limit = clock_type::now() + time_limit;
    size_t found = screen_.find(text, seen_);
    while (found == std::string::npos && clock_type::now() < limit && read_more())
        found = screen_.find(text, seen_);
    if (found == std::string::npos) {
        ADD_FAILURE() << "\"" << text << "\" did not appear after\n" << screen_.substr(seen_);
        return "";
    }
    const std::string before = screen_.substr(seen_, found - seen_);
    seen_ = found + text.size();
    return before;
}

int terminal_session::wait_for_end()
{
    const auto limit = clock_type::now() + time_limit;
    while (clock_type::now() < limit && read_more())
        continue;
    if (clock_type::now() >= limit) {
        ADD_FAILURE() << "kelctl did not end in time";
        return -1;
    }
    int status = 0;
    waitpid(program_, &status, 0);
    program_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// False at the end, which a terminal reports as an error.
bool terminal_session::read_more()
{
    pollfd source = {terminal_, POLLIN, 0};
    if (poll(&source, 1, 1000) <= 0)
        return true;
    std::array<char, 4096> chunk;
    const ssize_t got = read(terminal_, chunk.data(), chunk.size());
    if (got > 0)
        screen_.append(chunk.data(), static_cast<size_t>(got));
    return got > 0;
}
