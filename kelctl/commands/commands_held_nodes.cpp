// Nodes of other processes: which there are, and the end of one. Commands for such a node are the others, after --node.
#include "kelctl/commands/commands.h"
#include "kelctl/remote/messages.h"
#include "kelctl/remote/node_names.h"
#include "kelctl/session/session.h"
#include "socket/client.h"
#include "socket/socket_error.h"

#include <chrono>

namespace kelctl
{
namespace
{

constexpr std::string_view nodes_details =
    R"(A node that "up --hold" holds answers, unless it carries out a long command at
this moment. One that is shown as not answering may also be a socket that a
process left behind; the next node of its name replaces it.)";

constexpr std::string_view down_details =
    R"(Which one is said before the command: "kelctl --node NAME down". The process that
holds it shows the report as well, and ends.)";

// For one node that does not answer; a list of several waits so long for each of them.
constexpr std::chrono::seconds patience(1);

fields row_of(const node_socket &one)
{
    fields row = {
        {"name", one.name}, {"answers", false}, {"process", nullptr}, {"file", nullptr}, {"socket", one.path}};
    try {
        const sockets::client node(one.path, node_protocol, {.patience = patience});
        row["answers"] = true;
        row["process"] = node.greeting().at("process");
        row["file"] = node.greeting().at("file");
    } catch (const std::runtime_error &error) {
        row["why"] = error.what();
    }
    return row;
}

result list_nodes(const invocation &, session &)
{
    const fields rows = list_of(node_sockets(), row_of);
    if (rows.empty())
        return {.shown = {{"nodes", rows}}, .text = "no nodes\n"};
    return {.shown = {{"nodes", rows}}};
}

// The process that holds a node takes it down itself (remote/node_server.cpp). Its row exists so that help, completion
// and --node know the command.
result take_down_nothing(const invocation &, session &)
{
    return wrong_use("\"down\" is for a node that another process holds: name it with --node");
}

} // namespace

std::vector<command> held_node_commands()
{
    return {
        {.name = "nodes",
         .variants = {{.run = list_nodes}},
         .help = "List the nodes that processes hold on this machine",
         .details = nodes_details,
         .sources = {source::program, source::shell},
         .offline = true},
        {.name = "down",
         .variants = {{.run = take_down_nothing}},
         .help = "Take down the node that another process holds",
         .details = down_details,
         .sources = {source::program, source::shell}},
    };
}

} // namespace kelctl
