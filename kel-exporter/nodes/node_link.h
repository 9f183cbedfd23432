// One held node, asked over its socket by one thread.
#pragma once

#include "kel-exporter/nodes/counter_sums.h"
#include "kel-exporter/nodes/known_node.h"
#include "socket/client.h"

#include <optional>
#include <string>

namespace kel_exporter
{

class node_link
{
public:
    // Does not connect.
    explicit node_link(std::string name);

    // Asks it, connecting first where that is due. It answers when it has nothing else to do: `wait`, as that of a
    // client, returns false to give up. What it returns says what failed.
    known_node look(const sockets::client::waiter &wait);

private:
    void connect(const sockets::client::waiter &wait);

    const std::string name_;
    std::optional<sockets::client> client_;
    counter_sums sums_;
};

} // namespace kel_exporter
