// Names of held nodes, what is spoken with them, and where their sockets are: $XDG_RUNTIME_DIR/kelctl/NAME.sock, or
// /run/kelctl/NAME.sock for root and without that variable. Linked by kel-exporter, too, which knows nothing else of
// kelctl.
#pragma once

#include "socket/protocol.h"

#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

inline constexpr sockets::protocol node_protocol = {.name = "kelctl", .version = 1};

// "examples/node.toml" names the node "node".
std::string node_name_for(const std::string &file);

// Why no node can have this name; none: one can.
std::optional<std::string> wrong_node_name(const std::string &name);

// Where a node of this name is served by this process.
std::string socket_path(const std::string &name);

// A socket that lies where nodes have theirs. Whether anybody serves it shows when it is connected to.
struct node_socket {
    std::string name;
    std::string path;
};

// All that there are in both folders, also those that nobody serves any more, by their names; of two with the same name
// the one that this process would serve comes first. Without a name: of all nodes.
std::vector<node_socket> node_sockets(const std::string &name = "");

} // namespace kelctl
