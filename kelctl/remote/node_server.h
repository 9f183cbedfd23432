// This process's node, served to others: it carries out what they ask, one request after the other, in the thread that
// configures the node.
//
//     node_server served(address_for("edge", std::nullopt), "edge.toml", session, [&] { return take_down(); });
//     while (!session.finished && !unwanted_within(longest_wait, served.number()))
//         served.serve();
#pragma once

#include "kelctl/node/statistics.h"
#include "kelctl/results/result.h"
#include "kelctl/session/session.h"
#include "socket/server.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelctl
{

// Throws std::runtime_error when there is no such group.
sockets::address address_for(const std::string &name, const std::optional<std::string> &group);

class node_server
{
public:
    // `file`: the node's. `take_down`: what another process's "down" does; no further request is carried out after it.
    // Throws std::runtime_error when the address cannot be served, as when another process serves it. The session must
    // outlive this.
    node_server(const sockets::address &where, const std::string &file, session &session,
                std::function<result()> take_down);

    // Can be read when there is something to serve.
    int number() const;

    // Does what can be done now.
    void serve();

    // Sends what is left of the answers, to clients that read.
    void finish();

private:
    std::string answer_to(std::string_view request);
    fields answer_to(const fields &request);
    fields sample(const counted &which);
    fields carry_out(const fields &request);
    answer take_down();

    session &session_;
    const std::function<result()> take_down_;
    sockets::server server_;
};

} // namespace kelctl
