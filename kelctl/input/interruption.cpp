// The signal handler and all that it touches: lock-free flags, and an eventfd that wakes a poll() that waits.
#include "kelctl/input/interruption.h"

#include "terminal/terminal.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace kelctl
{
namespace
{

static_assert(std::atomic<bool>::is_always_lock_free);
std::atomic<bool> interrupt_noted = false;
std::atomic<bool> termination_noted = false;
std::atomic<bool> reload_noted = false;
std::atomic<bool> hangup_reloads = false;
std::atomic<int> wake_up = -1; // the eventfd; -1 without a watch

// SA_RESTART: system calls of the library go on after the signal, and do not fail with EINTR. SA_RESETHAND: the second
// signal does what it does by default.
constexpr int handled_always = SA_RESTART;
constexpr int handled_once = static_cast<int>(SA_RESETHAND | SA_RESTART);

constexpr struct {
    int signal;
    int flags;
} watched[] = {{SIGINT, handled_once}, {SIGTERM, handled_once}, {SIGHUP, handled_always}};
std::array<struct sigaction, std::size(watched)> before; // what the watch restores, in the order of `watched`

// The handler: nothing here but what a signal may interrupt anywhere.
void note(int signal)
{
    const int error = errno;
    const bool reload = signal == SIGHUP && hangup_reloads;
    (signal == SIGINT ? interrupt_noted : reload ? reload_noted : termination_noted) = true;
    const uint64_t one = 1;
    // A failure does not matter: the flag is set, and every waiter checks it.
    [[maybe_unused]] const ssize_t written = ::write(wake_up, &one, sizeof one);
    errno = error;
}

void handle(int signal, int flags)
{
    struct sigaction action = {};
    action.sa_handler = note;
    action.sa_flags = flags;
    sigaction(signal, &action, nullptr);
}

// Until the next signal.
void sleep_again()
{
    uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = read(wake_up, &count, sizeof count);
}

} // namespace

// The eventfd is first, so that no handler runs without it; what a watch before this one recorded is forgotten.
interruption_watch::interruption_watch(hangup meaning)
{
    wake_up = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wake_up < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    interrupt_noted = false;
    termination_noted = false;
    reload_noted = false;
    hangup_reloads = meaning == hangup::asks_for_reload;
    for (size_t i = 0; i < before.size(); ++i) {
        sigaction(watched[i].signal, nullptr, &before[i]);
        if (before[i].sa_handler != SIG_IGN)
            handle(watched[i].signal, watched[i].flags);
    }
}

interruption_watch::~interruption_watch()
{
    for (size_t i = 0; i < before.size(); ++i)
        sigaction(watched[i].signal, &before[i], nullptr);
    interrupt_noted = false;
    termination_noted = false;
    close(wake_up.exchange(-1));
}

bool interrupted()
{
    return interrupt_noted || termination_noted;
}

bool terminated()
{
    return termination_noted;
}

// SA_RESETHAND has put back the default action: the handler is set again, so that the next Ctrl-C is recorded, too.
void take_interruption()
{
    sleep_again();
    if (!interrupt_noted)
        return;
    handle(SIGINT, handled_once);
    interrupt_noted = false;
}

bool take_reload()
{
    if (!reload_noted.exchange(false))
        return false;
    sleep_again();
    return true;
}

bool has_controlling_terminal()
{
    const int terminal = open("/dev/tty", O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (terminal < 0)
        return false;
    close(terminal);
    return true;
}

// Signals that are ignored stay so in whatever this process executes.
void leave_interruptions_to_parent()
{
    for (const auto &one : watched)
        std::signal(one.signal, SIG_IGN);
    interrupt_noted = false;
    termination_noted = false;
}

// poll() leaves out descriptors below 0, and reports the loss of standard output's reader though no event is asked for.
bool unwanted_within(std::chrono::milliseconds longest, int descriptor)
{
    std::array<pollfd, 3> ends = {{{wake_up, POLLIN, 0}, {STDOUT_FILENO, 0, 0}, {descriptor, POLLIN, 0}}};
    const bool reloads = descriptor >= 0;
    if (!reloads)
        sleep_again(); // a reload that nobody takes here would wake it again and again
    if (!terminal::output_lost() && !interrupted() && !(reloads && reload_noted))
        poll(ends.data(), ends.size(), static_cast<int>(longest.count()));
    return interrupted() || terminal::output_lost();
}

bool input_before_interruption(int descriptor)
{
    std::array<pollfd, 2> sources = {{{descriptor, POLLIN, 0}, {wake_up, POLLIN, 0}}};
    while (!interrupted())
        if (poll(sources.data(), sources.size(), -1) > 0 && sources[0].revents != 0)
            return true;
    return false;
}

} // namespace kelctl
