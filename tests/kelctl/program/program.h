// The real kelctl as a child process.
#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

struct program_outcome {
    int status = -1; // exit status; -1 when it was ended by a signal, or for taking too long
    std::string out;
    std::string err;
};

struct program_run {
    std::vector<std::string> arguments;
    std::map<std::string, std::string> environment{}; // besides what every child gets
    std::string folder = ".";                         // where it runs
    std::string out_device{};                         // what standard output goes to; `out` stays empty then
    std::string in{};                                 // standard input; short enough for a pipe to hold
    bool on_terminal = false;                         // both streams are a terminal; everything is in `out`
    std::vector<std::string> through{};               // a program that starts it, with arguments in front of it
};

// Starts the program with a terminal of this name as its controlling one and all its streams. It does not get
// `not_its_own`. Gives the process id.
pid_t spawn_on_terminal(const program_run &run, const char *terminal, int not_its_own);

// Where every child has the sockets of its nodes, unless root holds them.
std::string runtime_folder();

// Waits until the program ends. One that has not after two minutes is ended.
program_outcome run_kelctl(const program_run &run);

// The program while it runs. What it prints waits in pipes that it must not fill, or on a terminal.
class running_kelctl
{
public:
    explicit running_kelctl(const program_run &run);
    ~running_kelctl(); // ends it, if it has not ended
    running_kelctl(const running_kelctl &) = delete;
    running_kelctl &operator=(const running_kelctl &) = delete;

    // Reads on until either stream holds the text. False when the program ended, or two minutes passed, without it.
    bool shows(const std::string &text);

    void signal(int number) const;

    pid_t process() const
    {
        return child_;
    }

    // Closes the reading end of its standard output.
    void leave_output();

    // Reads to the end.
    program_outcome finish();

private:
    bool read_until(const std::string &text);

    pid_t child_ = -1;
    int out_ = -1; // -1 when nobody reads any more
    int err_ = -1; // -1 on a terminal
    program_outcome outcome_;
};

// A folder with one file in it, for the life of the object.
class file_in_folder
{
public:
    file_in_folder(const std::string &name, const std::string &text);
    ~file_in_folder();
    file_in_folder(const file_in_folder &) = delete;
    file_in_folder &operator=(const file_in_folder &) = delete;

    const std::string &folder() const
    {
        return folder_;
    }

    // The folder's: all nodes of a user are in one place, and no other test has this one.
    std::string node_name() const;

private:
    std::string folder_;
};

// The words of a command line, and further ones.
std::vector<std::string> with(std::vector<std::string> words, const std::vector<std::string> &more);

// `kelctl run` of a script with this text, from standard input.
program_outcome run_text(const std::string &script, const std::vector<std::string> &options = {},
                         const std::map<std::string, std::string> &environment = {});

// `kelctl up` of a node file with this text, which is called node.toml.
program_outcome kelctl_up(const std::string &text, const std::map<std::string, std::string> &environment = {},
                          const std::vector<std::string> &options = {});

// A node file's parameters, four lines.
inline const std::string ebcom_table = "[ebcom]\nic_port_mtu = 1500\nether_type = 0x88B5\nsettings = [1, 2]\n";

// What a take-down says last.
inline const std::string empty_again = "Taken down. The node is empty again.\n";

// The octets of its longest line.
size_t widest_line(const std::string &text);

// What a file holds; nothing for one that is not there.
std::string text_of(const std::string &file);
