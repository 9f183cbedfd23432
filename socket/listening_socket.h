// A socket in the file system that this process listens on.
#pragma once

#include "socket/descriptor.h"

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <sys/un.h>

namespace sockets
{

// Throws socket_error when the path is too long for a socket.
sockaddr_un address_of(const std::string &path);

class listening_socket
{
public:
    // Makes the socket, for the owner alone (0600) or for a group as well (0660), and the folder it is in, which is not
    // there or is there already: 0700, or with a group 0750. A folder that is there stays as it is, unless there is a
    // group and the folder is the caller's. A socket that no process serves any more is replaced.
    //
    // Throws socket_error, also when a process serves this path.
    listening_socket(std::string path, std::optional<gid_t> group);

    // As remove().
    ~listening_socket();
    listening_socket(const listening_socket &) = delete;
    listening_socket &operator=(const listening_socket &) = delete;

    int number() const;
    const std::string &path() const;

    // Removes the socket, unless another one is in its place, or this is a child of the process that made it. From any
    // thread.
    void remove() const;

    // For a child process: stops listening there. The socket is its parent's.
    void leave_to_parent();

private:
    void remove_stale(const sockaddr_un &address) const;
    [[noreturn]] void fail(std::string_view reason, int error) const;

    std::string path_;
    descriptor socket_;
    pid_t maker_;
    dev_t device_ = 0;
    ino_t inode_ = 0;
};

} // namespace sockets
