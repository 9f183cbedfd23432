// kelctl: from the program's arguments to a command, and from its result to the exit status.
//
// What a command does is in kelctl/commands, and how it is carried out in kelctl/session: here is only what comes
// before and after.
#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/language/completion.h"
#include "kelctl/language/help.h"
#include "kelctl/remote/messages.h"
#include "kelctl/remote/node_names.h"
#include "kelctl/remote/remote_node.h"
#include "kelctl/results/fields_view.h"
#include "kelctl/results/result_view.h"
#include "kelctl/session/session.h"
#include "kelctl/values/exit_status.h"
#include "terminal/terminal.h"

#include <fmt/core.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace
{

using namespace kelctl;

std::vector<word> words_of_arguments(int argc, char **argv)
{
    std::vector<word> words;
    for (int i = 1; i < argc; ++i)
        words.push_back({.text = argv[i]});
    return words;
}

constexpr std::string_view node_option = "--node";
constexpr std::string_view softnode_option = "--softnode";

completion node_names(const std::string &begun)
{
    completion names;
    for (const node_socket &one : node_sockets())
        if (one.name.starts_with(begun))
            names.candidates.push_back({one.name, ""});
    return names;
}

// A person waits for these. A node that does not answer within a second offers nothing.
known_words words_of_node(const std::string &name)
{
    try {
        return known_of(remote_node(name, std::chrono::seconds(1)).ask({{"ask", "words"}}));
    } catch (const std::runtime_error &) {
        return {};
    }
}

void offer_options_before_command(const std::string &begun, completion &found)
{
    for (const auto &[option, means] : options_before_command())
        if (option.starts_with(begun))
            found.candidates.push_back({std::string(option.substr(0, option.find(' '))), std::string(means)});
}

// Asked by the completion scripts: with the words before the one that is being typed, and that one.
int offer(std::vector<word> words)
{
    const std::string begun = words.empty() ? "" : words.back().text;
    if (!words.empty())
        words.pop_back();
    if (!words.empty() && words.back().text == node_option) {
        terminal::write(stdout, lines_of(node_names(begun)));
        return exit_done;
    }
    if (!words.empty() && words.back().text == softnode_option) {
        terminal::write(stdout, lines_of({.files = true}));
        return exit_done;
    }
    const bool first = words.empty();
    const auto node = take_option_before_command(words, node_option);
    take_option_before_command(words, softnode_option);
    const known_words known = node ? words_of_node(*node) : known_words{};
    completion found = complete(commands(), words, begun, known, source::program);
    if (first && begun.starts_with("-"))
        offer_options_before_command(begun, found);
    terminal::write(stdout, lines_of(found));
    return exit_done;
}

// Whatever is opened next would become a standard descriptor that is closed. For reading only: what is written to a
// closed output still fails.
void open_closed_standard_descriptors()
{
    int opened = STDIN_FILENO;
    while (opened >= 0 && opened <= STDERR_FILENO)
        opened = open("/dev/null", O_RDONLY);
    close(opened);
}

// Runs in front of what libraries do when they are loaded: the tracer opens descriptors then, on threads of its own.
[[gnu::section(".preinit_array"), gnu::used]] void (*runs_first)() = open_closed_standard_descriptors;

void write_error(std::string_view what)
{
    terminal::write(stderr, line_on(page_for(stderr), fmt::format("kelctl: {}", what)));
}

// The node elsewhere is made in any case: it connects when it is asked first.
int run(std::vector<word> words)
{
    if (!words.empty() && words.front().text == "--complete")
        return offer({words.begin() + 1, words.end()});
    try {
        const auto name = take_option_before_command(words, node_option);
        const auto path = take_option_before_command(words, softnode_option);
        if (name && path)
            throw wrong_line("--node and --softnode name different processes; one of them is enough", 0);
        if (path)
            ask_accelerator_at(*path);
        const invocation asked = parse(commands(), words, source::program);
        remote_node node(name.value_or(""));
        session session(commands(), source::program, asked.shown);
        session.elsewhere = name ? &node : nullptr;
        return session.carry_out(asked).status;
    } catch (const wrong_line &wrong) {
        const line_parts parts = parts_of(commands(), words, source::program);
        show_wrong_line({wrong.what()}, help_hint(parts.name, source::program), manner_of(parts).json);
    }
    return exit_wrong_input;
}

} // namespace

int main(int argc, char **argv)
{
    // A node must not be left half way up because nobody reads the output any more.
    std::signal(SIGPIPE, SIG_IGN);
    // Who started kelctl may ignore the ends of its own children; how those of kelctl end counts.
    std::signal(SIGCHLD, SIG_DFL);
    try {
        const int status = run(words_of_arguments(argc, argv));
        const auto failure = terminal::output_failure();
        if (!failure)
            return status;
        write_error(fmt::format("standard output cannot be written: {}", *failure));
    } catch (const std::exception &error) {
        write_error(error.what());
    }
    return exit_operation_failed;
}
