// Making a socket file with the right modes from its first moment on, and replacing one that a dead process left.
#include "socket/listening_socket.h"

#include "socket/socket_error.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>
#include <time.h>
#include <unistd.h>
#include <utility>

namespace sockets
{
namespace
{

constexpr int backlog = 16;

const sockaddr *generic(const sockaddr_un &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

std::string folder_of(const std::string &path)
{
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

descriptor new_socket()
{
    return descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// The modes are set again after the making: those of mkdir() and bind() are cut by the process's umask.
void open_folder(const std::string &folder, std::optional<gid_t> group)
{
    const bool made = mkdir(folder.c_str(), S_IRWXU) == 0;
    if (!made && errno != EEXIST)
        throw socket_error(folder, "the folder cannot be made", errno);
    struct stat found = {};
    if (stat(folder.c_str(), &found) != 0)
        throw socket_error(folder, "the folder cannot be read", errno);
    if (!S_ISDIR(found.st_mode))
        throw socket_error(folder, "this is no folder");
    if (made && !group && chmod(folder.c_str(), S_IRWXU) != 0)
        throw socket_error(folder, "the folder cannot be kept to its owner", errno);
    if (!group || found.st_uid != geteuid())
        return;
    if (chown(folder.c_str(), static_cast<uid_t>(-1), *group) != 0 ||
        chmod(folder.c_str(), S_IRWXU | S_IRGRP | S_IXGRP) != 0)
        throw socket_error(folder, "the folder cannot be opened to the group", errno);
}

// Held while a socket is looked at and replaced: of two processes that start together only one may find it stale.
class folder_lock
{
public:
    explicit folder_lock(const std::string &folder) : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        constexpr timespec pause = {0, 10'000'000};
        constexpr int most_pauses = 200;
        if (!folder_.open())
            throw socket_error(folder, "the folder cannot be opened", errno);
        for (int pauses = 0; flock(folder_.number(), LOCK_EX | LOCK_NB) != 0; ++pauses) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                throw socket_error(folder, "the folder cannot be locked", errno);
            if (pauses == most_pauses)
                throw socket_error(folder, "another process keeps the folder locked");
            nanosleep(&pause, nullptr);
        }
    }

private:
    descriptor folder_; // which ends the lock
};

} // namespace

socket_error::socket_error(std::string_view path, std::string_view reason)
    : std::runtime_error(std::string(path).append(": ").append(reason))
{
}

socket_error::socket_error(std::string_view path, std::string_view reason, int error)
    : socket_error(path, std::string(reason).append(": ").append(std::generic_category().message(error)))
{
}

sockaddr_un address_of(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.empty())
        throw socket_error("\"\"", "the path of a socket is not empty");
    if (path.size() >= sizeof address.sun_path)
        throw socket_error(path, "the path of a socket has at most " + std::to_string(sizeof address.sun_path - 1) +
                                     " octets");
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

listening_socket::listening_socket(std::string path, std::optional<gid_t> group)
    : path_(std::move(path)), socket_(new_socket()), maker_(getpid())
{
    const sockaddr_un address = address_of(path_);
    const mode_t mode = S_IRUSR | S_IWUSR | (group ? S_IRGRP | S_IWGRP : 0);
    if (!socket_.open())
        fail("no socket can be made", errno);
    const std::string folder = folder_of(path_);
    open_folder(folder, group);
    const folder_lock alone(folder);
    remove_stale(address);
    // A socket file gets the mode that the socket has now. Nobody may connect before it listens.
    if (fchmod(socket_.number(), S_IRUSR | S_IWUSR) != 0 ||
        bind(socket_.number(), generic(address), sizeof address) != 0)
        fail("the socket cannot be made", errno);
    struct stat made = {};
    lstat(path_.c_str(), &made);
    device_ = made.st_dev;
    inode_ = made.st_ino;
    if ((group && chown(path_.c_str(), static_cast<uid_t>(-1), *group) != 0) || chmod(path_.c_str(), mode) != 0 ||
        listen(socket_.number(), backlog) != 0) {
        const int error = errno;
        unlink(path_.c_str());
        fail(group ? "the socket cannot be opened to the group" : "the socket cannot be opened", error);
    }
}

listening_socket::~listening_socket()
{
    remove();
}

void listening_socket::remove() const
{
    struct stat found = {};
    if (getpid() == maker_ && lstat(path_.c_str(), &found) == 0 && found.st_dev == device_ && found.st_ino == inode_)
        unlink(path_.c_str());
}

int listening_socket::number() const
{
    return socket_.number();
}

const std::string &listening_socket::path() const
{
    return path_;
}

void listening_socket::leave_to_parent()
{
    socket_ = descriptor();
}

void listening_socket::remove_stale(const sockaddr_un &address) const
{
    struct stat found = {};
    if (lstat(path_.c_str(), &found) != 0)
        return;
    if (!S_ISSOCK(found.st_mode))
        throw socket_error(path_, "this exists, and is no socket");
    const descriptor trial = new_socket();
    if (connect(trial.number(), generic(address), sizeof address) == 0 || errno == EAGAIN)
        throw socket_error(path_, "another process serves it");
    if (errno != ECONNREFUSED && errno != ENOENT)
        fail("whether another process serves it cannot be found out", errno);
    if (unlink(path_.c_str()) != 0 && errno != ENOENT)
        fail("the socket of a process that is gone cannot be removed", errno);
}

void listening_socket::fail(std::string_view reason, int error) const
{
    throw socket_error(path_, reason, error);
}

} // namespace sockets
