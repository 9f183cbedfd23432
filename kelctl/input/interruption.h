// Signals that ask the program to end: SIGINT (Ctrl-C), SIGTERM, and SIGHUP when the terminal closes. They are recorded
// and checked between operations, so that no call into the library is cut off. `up --hold` and the live view wait here.
//
//     const interruption_watch interruptions;
//     for (const invocation &line : lines) {
//         if (interrupted())
//             break;
//         session.carry_out(line);
//     }
//
// A process without a terminal may take SIGHUP for a request to read its files again: hangup::asks_for_reload.
//
// While there is an interruption_watch, the first SIGINT and the first SIGTERM are only recorded. The second of either
// ends the process at once: the way out when an operation hangs. Every SIGHUP is only recorded, because a terminal that
// closes sends several. A signal that was ignored before (`nohup`) stays ignored.
#pragma once

#include <chrono>
#include <cstdint>

namespace kelctl
{

// What SIGHUP is: the end of the terminal, or with it a request.
enum class hangup : uint8_t { ends, asks_for_reload };

// One at a time, on any thread.
class interruption_watch
{
public:
    explicit interruption_watch(hangup meaning = hangup::ends);
    ~interruption_watch(); // restores the former handlers, and forgets what was recorded
    interruption_watch(const interruption_watch &) = delete;
    interruption_watch &operator=(const interruption_watch &) = delete;
};

// True when a signal is recorded and take_interruption() has not cleared it. False without a watch.
bool interrupted();

// True when SIGTERM or SIGHUP is recorded. take_interruption() clears neither.
bool terminated();

// Clears a recorded Ctrl-C, when it was meant for one command or one typed line only. The next one is the first again.
void take_interruption();

// True once for each SIGHUP, or several that came together, which asks for a reload.
bool take_reload();

// True when a terminal controls this process: then SIGHUP says that it has closed.
bool has_controlling_terminal();

// For a child process: ignores these signals from here on. A terminal sends them to parent and child, and the parent
// decides what to do.
void leave_interruptions_to_parent();

// Waits for a signal, or for standard output to lose its reader (terminal.h), but no longer than `longest`. True when
// one of the two has happened. With a descriptor, returns early when it can be read, or when a reload is asked for.
bool unwanted_within(std::chrono::milliseconds longest, int descriptor = -1);

// Waits until the descriptor can be read or is at its end, and returns true. False when a signal is recorded first.
bool input_before_interruption(int descriptor);

} // namespace kelctl
