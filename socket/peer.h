// Who is at the other end of a connection.
#pragma once

#include <optional>
#include <sys/types.h>

namespace sockets
{

// Whether the process that connected may: one of the user that this process runs as, one of root, or one that is in the
// group. The kernel recorded who it is when it connected.
bool may_connect(int connection, std::optional<gid_t> group);

} // namespace sockets
