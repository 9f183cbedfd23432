// Asking the kernel for a peer's user and groups.
#include "socket/peer.h"

#include <algorithm>
#include <climits>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace sockets
{
namespace
{

// Besides its first group.
std::vector<gid_t> further_groups(int connection)
{
    std::vector<gid_t> groups(NGROUPS_MAX);
    socklen_t octets = NGROUPS_MAX * sizeof(gid_t);
    if (getsockopt(connection, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &octets) != 0)
        octets = 0;
    groups.resize(octets / sizeof(gid_t));
    return groups;
}

} // namespace

bool may_connect(int connection, std::optional<gid_t> group)
{
    ucred peer = {};
    socklen_t octets = sizeof peer;
    if (getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &octets) != 0)
        return false;
    if (peer.uid == geteuid() || peer.uid == 0)
        return true;
    if (!group)
        return false;
    const std::vector<gid_t> further = further_groups(connection);
    return peer.gid == *group || std::ranges::find(further, *group) != further.end();
}

} // namespace sockets
