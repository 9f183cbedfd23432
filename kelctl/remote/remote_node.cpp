// Finding the node's socket, asking, and the files of a command.
#include "kelctl/remote/remote_node.h"

#include "kelctl/input/interruption.h"
#include "kelctl/language/command_text.h"
#include "kelctl/remote/messages.h"
#include "kelctl/remote/node_names.h"
#include "kelctl/values/file_text.h"
#include "notation/json.h"
#include "socket/socket_error.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <stdexcept>
#include <utility>

namespace kelctl
{
namespace
{

// A file that cannot be read is sent as its problem: the node decides what the command does without it.
sent_file file_to_send(const std::string &name)
{
    problem_list problems;
    sent_file file = {text_of_file(name, problems)};
    if (!problems.empty())
        file.problem = std::move(problems.front().message);
    return file;
}

// The files that the command uses in this way.
std::vector<std::string> files_of(const invocation &asked, file_use use)
{
    std::vector<std::string> names;
    for (const argument &one : asked.row->arguments)
        if (one.kind.file == use && asked.given.has(one.name))
            names.push_back(asked.given.text(one.name));
    return names;
}

} // namespace

remote_node::remote_node(std::string name, std::chrono::milliseconds patience)
    : name_(std::move(name)), patience_(patience)
{
}

// Two sockets may have the name: the first that answers counts, and of two that do not the first says why. A socket
// that a killed process left behind answers nothing.
void remote_node::connect()
{
    std::string why =
        fmt::format("there is no node {}; \"kelctl nodes\" lists those that there are", text::in_quotes(name_));
    bool found = false;
    for (const auto &[name, path] : node_sockets(name_))
        try {
            client_.emplace(path, node_protocol, sockets::client_limits{.patience = patience_});
            return;
        } catch (const sockets::socket_error &error) {
            why = std::exchange(found, true) ? why : error.what();
        }
    throw std::runtime_error(why);
}

// A file that cannot be written takes the place of the result: the command is carried out, but its caller has not got
// what it asked for.
answer remote_node::carry_out(const invocation &asked, const asker &whom)
{
    command_request request = {words_of(asked), whom};
    for (const std::string &name : files_of(asked, file_use::read))
        request.files.insert_or_assign(name, file_to_send(name));
    command_answer answered = answer_of(ask(message_of(request)));
    for (const std::string &name : files_of(asked, file_use::written))
        if (const auto text = answered.written.find(name); text != answered.written.end())
            if (auto why = write_file(name, text->second))
                answered.given.done = refused(std::move(*why), name);
    return std::move(answered.given);
}

// The answer is waited for as long as it takes: a command may run for minutes, and a signal ends the wait.
fields remote_node::ask(const fields &question)
{
    if (!client_)
        connect();
    std::string line;
    try {
        line = client_->ask(notation::to_json(question), input_before_interruption);
    } catch (const sockets::socket_error &) {
        client_.reset();
        if (interrupted())
            throw std::runtime_error("interrupted; the node carries out all the same what it was asked for");
        throw;
    }
    fields message = notation::read_json(line);
    if (const std::string why = error_in(message); !why.empty())
        throw std::runtime_error(fmt::format("{}: {}", name_, why));
    return message;
}

} // namespace kelctl
