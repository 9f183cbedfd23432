// Ctrl-C, SIGTERM and the end of the terminal as something that is asked about between operations, so that none is torn apart.
//
// While there is a watch, the first such signal is only noted. A second SIGINT or SIGTERM ends the process at once: the
// way out when an operation hangs. A terminal that goes away sends SIGHUP more than once, which only means the same again.
// A signal that was ignored before stays ignored.
#pragma once

#include <chrono>

namespace kelctl
{

// One at a time, on any thread.
class interruption_watch
{
public:
    interruption_watch();
    ~interruption_watch(); // signals mean what they meant before
    interruption_watch(const interruption_watch &) = delete;
    interruption_watch &operator=(const interruption_watch &) = delete;
};

// Whether a signal was noted and not taken. False without a watch.
bool interrupted();

// The same but for Ctrl-C: what is never taken.
bool terminated();

// Takes Ctrl-C back: it is as if it had not been, and the next one is the first again.
void take_interruption();

// In a child process of one that is watched: signals of the terminal reach both, and are the parent's to follow.
void leave_interruptions_to_parent();

// Waits, at most so long, until nobody wants more: a signal is noted, or standard output reaches nobody (terminal.h).
bool unwanted_within(std::chrono::milliseconds longest);

// Waits until a descriptor can be read, or is at its end. False when a signal is noted instead.
bool input_before_interruption(int descriptor);

} // namespace kelctl
