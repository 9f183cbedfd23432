// Running `dot` between two files in memory: neither pipe can fill up, and nothing is left on a disk.
#include "kelctl/graphviz.h"

#include "kelctl/text.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <spawn.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kelctl
{
namespace
{

class memory_file
{
public:
    memory_file() : number_(memfd_create("kelctl-graph", MFD_CLOEXEC))
    {
    }

    ~memory_file()
    {
        if (number_ >= 0)
            close(number_);
    }

    memory_file(const memory_file &) = delete;
    memory_file &operator=(const memory_file &) = delete;

    int number() const
    {
        return number_;
    }

    // False when there is no room for all of it. It is read from its beginning then.
    bool fill(std::string_view text) const
    {
        return write(number_, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
               lseek(number_, 0, SEEK_SET) == 0;
    }

    std::string contents() const
    {
        const off_t end = lseek(number_, 0, SEEK_END);
        std::string text(end > 0 ? static_cast<size_t>(end) : 0, '\0');
        const ssize_t got = pread(number_, text.data(), text.size(), 0);
        text.resize(got > 0 ? static_cast<size_t>(got) : 0);
        return text;
    }

private:
    int number_;
};

// 0, or the system's error. `status` is as waitpid() has it.
int run_dot(const std::string &format, const std::array<int, 3> &streams, int &status)
{
    std::string program = "dot";
    std::string option = fmt::format("-T{}", format);
    const std::array<char *, 3> arguments = {program.data(), option.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int number = 0; number < 3; ++number)
        posix_spawn_file_actions_adddup2(&actions, streams[static_cast<size_t>(number)], number);
    pid_t child = -1;
    const int error = posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    while (error == 0 && waitpid(child, &status, 0) < 0 && errno == EINTR)
        ;
    return error;
}

} // namespace

drawing drawn_by_graphviz(const std::string &dot, const std::string &format)
{
    const memory_file in;
    const memory_file out;
    const memory_file told;
    if (!in.fill(dot))
        return {"", fmt::format("the graph cannot be handed to Graphviz: {}", std::strerror(errno))};
    int status = 0;
    const int error = run_dot(format, {in.number(), out.number(), told.number()}, status);
    if (error == ENOENT)
        return {"", "Graphviz's \"dot\" is not installed; --format dot needs no Graphviz"};
    if (error != 0)
        return {"", fmt::format("Graphviz's \"dot\" cannot be run: {}", std::strerror(error))};
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {"", fmt::format("Graphviz's \"dot\" failed: {}", printable(told.contents()))};
    return {out.contents(), ""};
}

} // namespace kelctl
