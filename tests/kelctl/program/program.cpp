// Starting, reading and ending the child process.
#include "program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace
{

using clock_type = std::chrono::steady_clock;
constexpr std::chrono::seconds time_limit(120);

// What a test's result must not depend on.
constexpr const char *forgotten[] = {
    "MPID",           "NO_COLOR", "KEL_SOFTNODE_FAULTS", "KEL_SOFTNODE_SOCKET", "XDG_RUNTIME_DIR",
    "XDG_STATE_HOME", "HOME",     "NOTIFY_SOCKET"};

std::vector<std::string> environment_with(const std::map<std::string, std::string> &more)
{
    std::vector<std::string> settings;
    for (char **entry = environ; *entry; ++entry) {
        const std::string setting = *entry;
        const std::string name = setting.substr(0, setting.find('='));
        const bool forget = std::find(std::begin(forgotten), std::end(forgotten), name) != std::end(forgotten);
        if (!forget && !more.contains(name))
            settings.push_back(setting);
    }
    if (!more.contains("XDG_RUNTIME_DIR"))
        settings.push_back("XDG_RUNTIME_DIR=" + runtime_folder());
    for (const auto &[name, value] : more)
        settings.push_back(name + "=" + value);
    return settings;
}

std::vector<char *> pointers_to(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// A stream that the child writes and the test reads.
struct channel {
    int read_end = -1;
    int write_end = -1;
};

channel open_channel(bool terminal)
{
    channel made;
    std::array<int, 2> ends{-1, -1};
    if (terminal)
        EXPECT_EQ(openpty(&made.read_end, &made.write_end, nullptr, nullptr, nullptr), 0);
    else if (pipe(ends.data()) == 0)
        made = {ends[0], ends[1]};
    fcntl(made.read_end, F_SETFD, FD_CLOEXEC);
    fcntl(made.write_end, F_SETFD, FD_CLOEXEC);
    return made;
}

pid_t spawn(const program_run &run, posix_spawn_file_actions_t *actions, const posix_spawnattr_t *attributes)
{
    std::vector<std::string> arguments = run.through;
    arguments.emplace_back(KELCTL_PROGRAM);
    arguments.insert(arguments.end(), run.arguments.begin(), run.arguments.end());
    std::vector<std::string> environment = environment_with(run.environment);
    posix_spawn_file_actions_addchdir_np(actions, run.folder.c_str());
    pid_t child = -1;
    EXPECT_EQ(posix_spawnp(&child, arguments[0].c_str(), actions, attributes, pointers_to(arguments).data(),
                           pointers_to(environment).data()),
              0);
    return child;
}

pid_t spawn_with_streams(const program_run &run, int in, int out, int err)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in, 0);
    posix_spawn_file_actions_adddup2(&actions, out, 1);
    if (!run.out_device.empty())
        posix_spawn_file_actions_addopen(&actions, 1, run.out_device.c_str(), O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, err, 2);
    const pid_t child = spawn(run, &actions, nullptr);
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

// The read end of a pipe that holds the whole text.
int pipe_holding(const std::string &text)
{
    const channel made = open_channel(false);
    EXPECT_LT(text.size(), 65536u); // what a pipe holds
    EXPECT_EQ(write(made.write_end, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(made.write_end);
    return made.read_end;
}

// Adds what there is to read. False at the end, which a terminal reports as an error.
bool read_some(int descriptor, std::string &text)
{
    std::array<char, 65536> buffer;
    const ssize_t got = read(descriptor, buffer.data(), buffer.size());
    if (got > 0)
        text.append(buffer.data(), static_cast<size_t>(got));
    return got > 0 || (got < 0 && errno == EINTR);
}

} // namespace

// The first terminal that the leader of a session opens becomes its controlling one.
pid_t spawn_on_terminal(const program_run &run, const char *terminal, int not_its_own)
{
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, terminal, O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, 0, 1);
    posix_spawn_file_actions_adddup2(&actions, 0, 2);
    posix_spawn_file_actions_addclose(&actions, not_its_own);
    const pid_t child = spawn(run, &actions, &attributes);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return child;
}

running_kelctl::running_kelctl(const program_run &run)
{
    const channel out = open_channel(run.on_terminal);
    const channel err = run.on_terminal ? channel{} : open_channel(false);
    const int in = pipe_holding(run.in);
    child_ = spawn_with_streams(run, in, out.write_end, run.on_terminal ? out.write_end : err.write_end);
    close(in);
    close(out.write_end);
    if (err.write_end >= 0)
        close(err.write_end);
    out_ = out.read_end;
    err_ = err.read_end;
}

running_kelctl::~running_kelctl()
{
    if (child_ > 0) {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
    for (const int end : {out_, err_})
        if (end >= 0)
            close(end);
}

bool running_kelctl::shows(const std::string &text)
{
    return read_until(text);
}

void running_kelctl::signal(int number) const
{
    EXPECT_EQ(kill(child_, number), 0);
}

void running_kelctl::leave_output()
{
    close(std::exchange(out_, -1));
}

program_outcome running_kelctl::finish()
{
    if (child_ < 0)
        return {};
    read_until("");
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = -1;
    outcome_.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return std::move(outcome_);
}

// Without a text: to the end of both streams. A program that takes too long is ended.
bool running_kelctl::read_until(const std::string &text)
{
    const auto found = [&] {
        return !text.empty() &&
               (outcome_.out.find(text) != std::string::npos || outcome_.err.find(text) != std::string::npos);
    };
    std::array<pollfd, 2> streams = {{{out_, POLLIN, 0}, {err_, POLLIN, 0}}};
    const auto limit = clock_type::now() + time_limit;
    while (!found() && (streams[0].fd >= 0 || streams[1].fd >= 0)) {
        if (clock_type::now() > limit) {
            ADD_FAILURE() << "kelctl did not end in time";
            kill(child_, SIGKILL);
            return false;
        }
        poll(streams.data(), streams.size(), 1000);
        if (streams[0].revents && !read_some(out_, outcome_.out))
            streams[0].fd = -1;
        if (streams[1].revents && !read_some(err_, outcome_.err))
            streams[1].fd = -1;
    }
    return found();
}

program_outcome run_kelctl(const program_run &run)
{
    return running_kelctl(run).finish();
}

file_in_folder::file_in_folder(const std::string &name, const std::string &text)
{
    std::string pattern = testing::TempDir() + "kelctl.XXXXXX";
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    folder_ = pattern;
    std::ofstream(folder_ + "/" + name, std::ios::binary) << text;
}

std::string runtime_folder()
{
    return std::filesystem::path(testing::TempDir() + ".").parent_path();
}

std::string file_in_folder::node_name() const
{
    return std::filesystem::path(folder_).filename();
}

file_in_folder::~file_in_folder()
{
    std::filesystem::remove_all(folder_);
}

std::vector<std::string> with(std::vector<std::string> words, const std::vector<std::string> &more)
{
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

program_outcome run_text(const std::string &script, const std::vector<std::string> &options,
                         const std::map<std::string, std::string> &environment)
{
    return run_kelctl({.arguments = with({"run", "-"}, options), .environment = environment, .in = script});
}

program_outcome kelctl_up(const std::string &text, const std::map<std::string, std::string> &environment,
                          const std::vector<std::string> &options)
{
    const file_in_folder file("node.toml", text);
    return run_kelctl(
        {.arguments = with({"up", "node.toml"}, options), .environment = environment, .folder = file.folder()});
}

size_t widest_line(const std::string &text)
{
    size_t widest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        widest = std::max(widest, line.size());
    return widest;
}

std::string text_of(const std::string &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
