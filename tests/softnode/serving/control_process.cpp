/*
 * control_process.cpp - starting a program, and its ends of two pipes.
 */
#include "control_process.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

ControlProcess::ControlProcess(const std::string &program, const std::vector<std::string> &variables)
{
    std::array<int, 2> to{};
    std::array<int, 2> from{};
    if (pipe2(to.data(), O_CLOEXEC) != 0 || pipe2(from.data(), O_CLOEXEC) != 0)
        std::abort();
    id_ = fork();
    if (id_ == 0) {
        dup2(to[0], STDIN_FILENO);
        dup2(from[1], STDOUT_FILENO);
        dup2(from[1], STDERR_FILENO);
        for (const std::string &one : variables)
            putenv(const_cast<char *>(one.c_str()));
        execl(program.c_str(), program.c_str(), nullptr);
        _exit(127);
    }
    close(to[0]);
    close(from[1]);
    input_ = to[1];
    output_ = from[0];
}

ControlProcess::~ControlProcess()
{
    if (id_ > 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    if (input_ >= 0)
        close(input_);
    close(output_);
}

std::string ControlProcess::ask(const std::string &request)
{
    const std::string sent = request + '\n';
    return write(input_, sent.data(), sent.size()) == static_cast<ssize_t>(sent.size()) ? line() : "";
}

std::string ControlProcess::line()
{
    std::array<char, 1024> piece;
    std::size_t end = 0;
    while ((end = written_.find('\n')) == std::string::npos) {
        const ssize_t octets = read(output_, piece.data(), piece.size());
        if (octets <= 0)
            return "";
        written_.append(piece.data(), static_cast<std::size_t>(octets));
    }
    std::string first = written_.substr(0, end);
    written_.erase(0, end + 1);
    return first;
}

int ControlProcess::end()
{
    int status = 0;
    close(input_);
    input_ = -1;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
