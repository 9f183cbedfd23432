/*
 * command.h - runs a shell command and keeps what it wrote and how it ended.
 */
#ifndef TESTS_SOFTNODE_COMMAND_H
#define TESTS_SOFTNODE_COMMAND_H

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

struct Outcome {
    int status = -1; /* exit status; -1 when the command did not exit by itself */
    std::string output;
};

inline Outcome run(const std::string &command)
{
    Outcome outcome;
    std::FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        return outcome;
    std::array<char, 4096> piece;
    while (const std::size_t octets = std::fread(piece.data(), 1, piece.size(), pipe))
        outcome.output.append(piece.data(), octets);
    const int ended = pclose(pipe);
    outcome.status = WIFEXITED(ended) ? WEXITSTATUS(ended) : -1;
    return outcome;
}

#endif
