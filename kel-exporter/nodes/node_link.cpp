// Connecting, asking, adding up. When a node is asked is watched_nodes.cpp.
#include "kel-exporter/nodes/node_link.h"

#include "kelctl/remote/node_names.h"
#include "notation/json.h"
#include "socket/socket_error.h"

#include <stdexcept>
#include <utility>

namespace kel_exporter
{
namespace
{

constexpr sockets::client_limits granted = {.longest_answer = size_t{16} << 20, .patience = std::chrono::seconds(1)};

} // namespace

node_link::node_link(std::string name) : name_(std::move(name))
{
}

// Of two sockets with the name the first counts that is served.
void node_link::connect(const sockets::client::waiter &wait)
{
    std::string why = "there is no such node";
    for (const auto &[name, path] : kelctl::node_sockets(name_))
        try {
            client_.emplace(path, kelctl::node_protocol, granted, wait);
            return;
        } catch (const sockets::socket_error &error) {
            why = error.what();
        }
    throw std::runtime_error(why);
}

// Any failure ends the connection: what an interrupted answer left of a line would be taken for the next answer.
known_node node_link::look(const sockets::client::waiter &wait)
{
    known_node seen = {.name = name_};
    try {
        if (!client_)
            connect(wait);
        notation::document answer = notation::read_json(client_->ask(R"({"ask":"state"})", wait));
        if (const notation::document *error = answer.find("error"))
            throw std::runtime_error(error->text());
        notation::document state = answer.at("result").at("shown");
        sums_.carry_on(state);
        if (const notation::document &file = client_->greeting().at("file"); file.holds() == notation::kind::text)
            seen.file = file.text();
        seen.read = watch_clock::now();
        seen.state = std::make_shared<const notation::document>(std::move(state));
        seen.up = true;
    } catch (const std::exception &error) {
        client_.reset();
        seen.why = error.what();
    }
    return seen;
}

} // namespace kel_exporter
