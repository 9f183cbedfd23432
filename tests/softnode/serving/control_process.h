/*
 * control_process.h - a program that runs beside the test, with lines to and from it.
 */
#ifndef TESTS_SOFTNODE_CONTROL_PROCESS_H
#define TESTS_SOFTNODE_CONTROL_PROCESS_H

#include <string>
#include <sys/types.h>
#include <vector>

/* Killed with the object when it has not ended. */
class ControlProcess
{
public:
    /* `variables`: NAME=VALUE, beside those of the test. Standard error goes where standard output goes. */
    ControlProcess(const std::string &program, const std::vector<std::string> &variables);
    ~ControlProcess();
    ControlProcess(const ControlProcess &) = delete;
    ControlProcess &operator=(const ControlProcess &) = delete;

    /* Sends a line and returns the next one that it writes. */
    std::string ask(const std::string &line);

    /* The next line that it writes; empty at the end. */
    std::string line();

    /* Ends its input. Returns its exit status, -1 when a signal ended it. */
    int end();

    pid_t id() const
    {
        return id_;
    }

private:
    pid_t id_ = 0;
    int input_ = -1;
    std::string written_;
    int output_ = -1;
};

#endif
