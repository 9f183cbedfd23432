// `up --hold`: a node that stays until a signal, and that other processes may ask meanwhile (remote/node_server.h).
//
//     held_node held(asked.given, node, session);
//     if (node.up())
//         held.hold();
//     else
//         held.give_up();
//     node.down();
//     held.finish();
//
// Reports the state of the node to the service manager that started the process (socket/service_manager.h).
#pragma once

#include "kelctl/jobs/bring_up.h"
#include "kelctl/language/arguments.h"
#include "kelctl/remote/node_server.h"
#include "kelctl/session/session.h"
#include "socket/service_manager.h"

#include <string>

namespace kelctl
{

// The name that is given, or else the file's.
std::string name_of_node(const arguments &given);

class held_node
{
public:
    // From here on nobody else serves a node of this name; requests wait until hold(). Throws std::runtime_error when
    // the node cannot be served. `node` and the session must outlive this.
    held_node(const arguments &given, bring_up &node, session &session);

    // The node did not come up.
    void give_up();

    // Until a signal, the loss of standard output's reader, or until another process has taken the node down. SIGHUP
    // without a terminal applies the node's file again (input/interruption.h).
    void hold();

    // Sends what is left of the answers.
    void finish();

private:
    result take_down();
    void reload();

    const std::string name_;
    const std::string file_;
    bring_up &node_;
    session &session_;
    sockets::service_manager manager_;
    node_server served_;
};

} // namespace kelctl
