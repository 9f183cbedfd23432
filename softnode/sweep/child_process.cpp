/*
 * child_process.cpp - forking, waiting with a limit, and leaving neither process nor descriptor behind.
 */
#include "softnode/sweep/child_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace softnode
{

namespace
{

using Clock = std::chrono::steady_clock;

/* What the work yielded is followed by this octet: without it, the child did not come to its end. */
constexpr char end_mark = '\0';

class Descriptor
{
public:
    explicit Descriptor(int number) : number_(number)
    {
    }

    ~Descriptor()
    {
        close();
    }

    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int number() const
    {
        return number_;
    }

    void close()
    {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

void write_all(int descriptor, const std::string &text)
{
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t octets = write(descriptor, text.data() + written, text.size() - written);
        if (octets < 0 && errno != EINTR)
            return;
        written += octets > 0 ? static_cast<std::size_t>(octets) : 0;
    }
}

/* An exception that the work lets out must not get into the caller's frames, which the child has copies of. */
[[noreturn]] void be_the_child(const std::function<std::string()> &work, int descriptor) noexcept
{
    const rlimit no_core{0, 0};
    setrlimit(RLIMIT_CORE, &no_core);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string yielded = work();
    std::fflush(stdout); /* or _exit() would lose what the work has printed */
    write_all(descriptor, yielded + end_mark);
    _exit(0);
}

/* Rounded up, so that a wait is never cut into many short ones at its end. */
int milliseconds_until(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, 1'000'000));
}

bool complete(const std::string &text)
{
    return !text.empty() && text.back() == end_mark;
}

/* Appends what the child has written. False once there is no more to come. */
bool read_piece(int descriptor, std::string &text)
{
    std::array<char, 65'536> piece;
    const ssize_t octets = read(descriptor, piece.data(), piece.size());
    if (octets > 0)
        text.append(piece.data(), static_cast<std::size_t>(octets));
    return octets > 0 && !complete(text);
}

/* Reads until the child is through or gone. False when the time was up before. */
bool read_in_time(int descriptor, Clock::time_point deadline, std::string &text)
{
    while (Clock::now() < deadline) {
        pollfd ready{descriptor, POLLIN, 0};
        if (poll(&ready, 1, milliseconds_until(deadline)) > 0 && !read_piece(descriptor, text))
            return true;
    }
    return false;
}

/* It has nothing left to do, or has had its time. */
void end_child(pid_t child)
{
    kill(child, SIGKILL);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR)
        ;
}

ChildOutcome outcome_of(bool in_time, std::string text)
{
    if (!in_time)
        return {ChildEnd::hung, {}};
    if (!complete(text))
        return {ChildEnd::crashed, {}};
    text.pop_back();
    return {ChildEnd::returned, std::move(text)};
}

} // namespace

std::optional<ChildOutcome> run_in_child(const std::function<std::string()> &work, std::chrono::milliseconds limit)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);

    std::fflush(nullptr); /* or the child would write out again what the caller has not yet */
    const Clock::time_point deadline = Clock::now() + limit;
    const pid_t child = fork();
    if (child < 0)
        return std::nullopt;
    if (child == 0)
        be_the_child(work, writing.number());
    writing.close();

    std::string text;
    const bool in_time = read_in_time(reading.number(), deadline, text);
    end_child(child);
    return outcome_of(in_time, std::move(text));
}

} // namespace softnode
