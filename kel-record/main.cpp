// kel-record: from the program's arguments to the recorded program, which takes this process over: its signals, its
// terminal and its exit status are what they are without a recording.
//
// Nothing of this program is left then: what is recorded, and where, is decided in preload/.
#include "kel-record/language/request.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/auxv.h>
#include <unistd.h>
#include <vector>

namespace
{

using namespace kel_record;
namespace fs = std::filesystem;

// As a shell's, where the program could not be run; else the status is the program's.
enum exit_status { exit_done = 0, exit_wrong_input = 2, exit_cannot_run = 126, exit_not_found = 127 };

// A file that was there is emptied: the first process that calls the library takes an empty one for its own. A pipe or
// a device is left alone, as its reader would see an end.
void prepare(const std::string &file)
{
    const bool special = fs::exists(file) && !fs::is_regular_file(file) && !fs::is_directory(file);
    const int opened = special ? -1 : open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (special ? access(file.c_str(), W_OK) != 0 : opened < 0)
        throw std::runtime_error(fmt::format("{}: cannot be written: {}", file, std::strerror(errno)));
    if (!special)
        close(opened);
}

// Beside the program, in the build tree and where it is installed. The kernel passes the program's path; /proc, which
// shows it as well, need not be mounted.
fs::path preloaded_library()
{
    fs::path library = fs::canonical(reinterpret_cast<const char *>(getauxval(AT_EXECFN))).parent_path().parent_path() /
                       KEL_RECORD_LIBRARY;
    if (!fs::exists(library))
        throw std::runtime_error(fmt::format("{} is missing", library.string()));
    return library;
}

// In front of what is preloaded already. The loader parts names at blanks and colons.
void preload(const fs::path &library)
{
    const std::string name = library.string();
    if (name.find_first_of(" :") != std::string::npos)
        throw std::runtime_error(
            fmt::format("{}: a library with a blank or a colon in its path cannot be preloaded", name));
    const char *others = std::getenv("LD_PRELOAD");
    setenv("LD_PRELOAD", (others ? fmt::format("{}:{}", name, others) : name).c_str(), 1);
}

// Returns only when the program cannot be run. The file is prepared after the library was found: what cannot be
// recorded empties no file.
int run(const request &asked)
{
    const std::string output =
        asked.output.empty() ? fs::path(asked.program.front()).filename().string() + ".kel" : asked.output;
    preload(preloaded_library());
    prepare(output);
    setenv("KEL_RECORD_FILE", fs::absolute(output).c_str(), 1); // wherever the program goes

    std::vector<std::string> words = asked.program;
    std::vector<char *> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    const int error = errno;
    fmt::print(stderr, "kel-record: {}: {}\n", words.front(), std::strerror(error));
    return error == ENOENT ? exit_not_found : exit_cannot_run;
}

int carry_out(const std::vector<std::string> &words)
{
    const request asked = parse_request(words);
    if (!asked.answer)
        return run(asked);
    return options::print("kel-record", *asked.answer) ? exit_done : exit_wrong_input;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return carry_out({argv + 1, argv + argc});
    } catch (const options::wrong_request &wrong) {
        fmt::print(stderr, "kel-record: {}\nkel-record --help shows the options\n", wrong.what());
    } catch (const std::exception &error) {
        fmt::print(stderr, "kel-record: {}\n", error.what());
    }
    return exit_wrong_input;
}
