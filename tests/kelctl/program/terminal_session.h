// The real kelctl on a terminal of its own, driven as a person would: type, and look at what appears.
#pragma once

#include "program.h"

#include <string>
#include <sys/types.h>

class terminal_session
{
public:
    explicit terminal_session(const program_run &run, unsigned short columns = 80);
    ~terminal_session(); // ends the program if it still runs
    terminal_session(const terminal_session &) = delete;
    terminal_session &operator=(const terminal_session &) = delete;

    // Keys as they are typed. "\x03" is Ctrl-C.
    void type(const std::string &keys);

    // Sends a signal to the program.
    void send(int signal);

    // Waits until this appears after everything that was waited for before. Gives what came before it; fails the test when
    // it does not come within two minutes or the program ends.
    std::string wait_for(const std::string &text);

    // Waits until the program ends. Gives its exit status, -1 when it was ended by a signal or for taking too long.
    int wait_for_end();

    // Everything that appeared so far.
    const std::string &screen() const
    {
        return screen_;
    }

private:
    bool read_more();

    int terminal_ = -1;
    pid_t program_ = -1;
    std::string screen_;
    size_t seen_ = 0; // where waiting goes on
};

// What is typed, and what the terminal makes of the end of a line.
inline const std::string enter = "\r";
inline const std::string line_end = "\r\n";
