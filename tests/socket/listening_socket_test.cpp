// Whose a socket is, and what was there before.
#include "socket/listening_socket.h"

#include "socket/socket_error.h"
#include "tests/refused_calls.h"
#include "tests/socket/folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace sockets
{
namespace
{

using testing::HasSubstr;

struct stat state_of(const std::string &path)
{
    struct stat found = {};
    EXPECT_EQ(lstat(path.c_str(), &found), 0) << path;
    return found;
}

unsigned mode_of(const std::string &path)
{
    return state_of(path).st_mode & 07777;
}

std::string refusal_of(const std::string &path, std::optional<gid_t> group = std::nullopt)
{
    try {
        const listening_socket made(path, group);
    } catch (const socket_error &refused) {
        return refused.what();
    }
    return "";
}

// What a process leaves that ends without tidying up.
void leave_stale(const std::string &path)
{
    const descriptor dead(::socket(AF_UNIX, SOCK_STREAM, 0));
    const sockaddr_un address = address_of(path);
    ASSERT_EQ(bind(dead.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
}

class umask_of
{
public:
    explicit umask_of(mode_t mask) : before_(umask(mask))
    {
    }
    ~umask_of()
    {
        umask(before_);
    }

private:
    mode_t before_;
};

TEST(ListeningSocket, IsForItsOwnerAlone)
{
    for (const mode_t mask : {0U, 0777U}) {
        const folder here;
        const umask_of process(mask);
        const listening_socket made(here.file("nodes/a.sock"), std::nullopt);
        EXPECT_EQ(mode_of(here.file("nodes")), 0700U) << mask;
        EXPECT_EQ(mode_of(made.path()), 0600U) << mask;
    }
}

TEST(ListeningSocket, IsOpenToAGroup)
{
    for (const mode_t mask : {0U, 0777U}) {
        const folder here;
        const umask_of process(mask);
        const listening_socket made(here.file("nodes/a.sock"), getgid());
        EXPECT_EQ(mode_of(here.file("nodes")), 0750U) << mask;
        EXPECT_EQ(mode_of(made.path()), 0660U) << mask;
        EXPECT_EQ(state_of(made.path()).st_gid, getgid());
    }
}

TEST(ListeningSocket, OpensItsOwnFolderToAGroup)
{
    const folder here;
    const listening_socket first(here.file("nodes/a.sock"), std::nullopt);
    const listening_socket second(here.file("nodes/b.sock"), getgid());
    EXPECT_EQ(mode_of(here.file("nodes")), 0750U);
    EXPECT_EQ(mode_of(first.path()), 0600U);
}

TEST(ListeningSocket, LeavesAFolderThatIsThereAsItIs)
{
    const folder here;
    chmod(here.path().c_str(), 0755);
    const listening_socket made(here.file("a.sock"), std::nullopt);
    EXPECT_EQ(mode_of(here.path()), 0755U);
}

TEST(ListeningSocket, RefusesAPathThatAProcessServes)
{
    const folder here;
    const listening_socket first(here.file("a.sock"), std::nullopt);
    EXPECT_EQ(refusal_of(first.path()), first.path() + ": another process serves it");
    EXPECT_EQ(mode_of(first.path()), 0600U);
}

TEST(ListeningSocket, ReplacesWhatADeadProcessLeft)
{
    const folder here;
    leave_stale(here.file("a.sock"));
    const ino_t stale = state_of(here.file("a.sock")).st_ino;
    const descriptor keeps_inode(open(here.file("a.sock").c_str(), O_PATH | O_CLOEXEC));
    const listening_socket made(here.file("a.sock"), std::nullopt);
    EXPECT_NE(state_of(made.path()).st_ino, stale);
}

TEST(ListeningSocket, ReplacesNoFile)
{
    const folder here;
    std::ofstream(here.file("a.sock")) << "text";
    EXPECT_EQ(refusal_of(here.file("a.sock")), here.file("a.sock") + ": this exists, and is no socket");
    EXPECT_TRUE(std::filesystem::is_regular_file(here.file("a.sock")));
}

TEST(ListeningSocket, TellsWhatIsWrongWithAPath)
{
    const folder here;
    EXPECT_EQ(refusal_of(""), "\"\": the path of a socket is not empty");
    EXPECT_THAT(refusal_of(here.file(std::string(200, 'a'))), HasSubstr("the path of a socket has at most 107 octets"));
    EXPECT_EQ(refusal_of(here.file("a/b/c.sock")),
              here.file("a/b") + ": the folder cannot be made: No such file or directory");
    std::ofstream(here.file("file")) << "text";
    EXPECT_EQ(refusal_of(here.file("file/c.sock")), here.file("file") + ": this is no folder");
}

struct refusal {
    std::vector<refused_call> calls;
    std::string says; // behind the folder's name
    std::optional<gid_t> group = {};
};

// The first and only entry of the folder is what a test left there itself.
void expect_refusals(const std::vector<refusal> &refusals, bool stale)
{
    for (const refusal &one : refusals) {
        const folder here;
        if (stale) {
            ASSERT_EQ(mkdir(here.file("nodes").c_str(), S_IRWXU), 0);
            leave_stale(here.file("nodes/a.sock"));
        }
        const std::string said =
            where_refused(one.calls, [&] { return refusal_of(here.file("nodes/a.sock"), one.group); });
        EXPECT_EQ(said, one.says.empty() ? "" : here.path() + one.says);
        if (!stale)
            EXPECT_FALSE(std::filesystem::exists(here.file("nodes/a.sock"))) << one.says;
    }
}

TEST(ListeningSocket, SaysWhatTheSystemRefuses)
{
    expect_refusals(
        {
            {{{SYS_socket, EMFILE}}, "/nodes/a.sock: no socket can be made: Too many open files"},
            {{{SYS_newfstatat, EACCES, 3, 0}}, "/nodes: the folder cannot be read: Permission denied"},
            {{{SYS_chmod, EROFS}}, "/nodes: the folder cannot be kept to its owner: Read-only file system"},
            {{{SYS_chmod, EROFS}}, "/nodes: the folder cannot be opened to the group: Read-only file system", getgid()},
            {{{SYS_chown, EPERM}},
             "/nodes: the folder cannot be opened to the group: Operation not permitted",
             getgid()},
            {{{SYS_openat, EMFILE}}, "/nodes: the folder cannot be opened: Too many open files"},
            {{{SYS_flock, ENOLCK}}, "/nodes: the folder cannot be locked: No locks available"},
            {{{SYS_flock, EWOULDBLOCK}, {SYS_clock_nanosleep, 0}}, "/nodes: another process keeps the folder locked"},
            {{{SYS_flock, EINTR}, {SYS_clock_nanosleep, 0}}, "/nodes: another process keeps the folder locked"},
            {{{SYS_fchmod, EROFS}}, "/nodes/a.sock: the socket cannot be made: Read-only file system"},
            {{{SYS_bind, EACCES}}, "/nodes/a.sock: the socket cannot be made: Permission denied"},
            {{{SYS_listen, EADDRINUSE}}, "/nodes/a.sock: the socket cannot be opened: Address already in use"},
            {{{SYS_listen, EADDRINUSE}},
             "/nodes/a.sock: the socket cannot be opened to the group: Address already in use",
             getgid()},
        },
        false);
}

TEST(ListeningSocket, SaysWhyItCannotReplaceWhatADeadProcessLeft)
{
    expect_refusals(
        {
            {{{SYS_connect, EACCES}},
             "/nodes/a.sock: whether another process serves it cannot be found out: Permission denied"},
            {{{SYS_connect, EAGAIN}}, "/nodes/a.sock: another process serves it"},
            {{{SYS_connect, ENOENT}}, ""},
            {{{SYS_unlink, EROFS}},
             "/nodes/a.sock: the socket of a process that is gone cannot be removed: Read-only file system"},
            {{{SYS_unlink, ENOENT}}, "/nodes/a.sock: the socket cannot be made: Address already in use"},
            {{{SYS_chmod, EROFS}}, "/nodes/a.sock: the socket cannot be opened: Read-only file system"},
        },
        true);
}

TEST(ListeningSocket, MayBeInTheUppermostFolder)
{
    EXPECT_EQ(where_refused({{SYS_bind, EROFS}}, [] { return refusal_of("/kel-test.sock"); }),
              "/kel-test.sock: the socket cannot be made: Read-only file system");
}

TEST(ListeningSocket, LeavesAFolderOfAnotherUserAsItIs)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    constexpr uid_t nobody = 65534;
    const folder here;
    ASSERT_EQ(chown(here.path().c_str(), nobody, nobody), 0);
    const std::string socket = here.file("a.sock");
    EXPECT_EQ(refusal_of(socket, getgid()), "");
    EXPECT_EQ(state_of(here.path()).st_gid, nobody);
    EXPECT_EQ(mode_of(here.path()), 0700U);
    EXPECT_EQ(where_refused({{SYS_chown, EPERM}}, [&] { return refusal_of(socket, getgid()); }),
              socket + ": the socket cannot be opened to the group: Operation not permitted");
}

TEST(ListeningSocket, IsRemovedAtItsEnd)
{
    const folder here;
    std::make_unique<listening_socket>(here.file("a.sock"), std::nullopt).reset();
    EXPECT_FALSE(std::filesystem::exists(here.file("a.sock")));
}

TEST(ListeningSocket, RemovesNoOtherInItsPlace)
{
    const folder here;
    auto first = std::make_unique<listening_socket>(here.file("a.sock"), std::nullopt);
    std::filesystem::rename(here.file("a.sock"), here.file("b.sock"));
    const listening_socket second(here.file("a.sock"), std::nullopt);
    first.reset();
    EXPECT_TRUE(std::filesystem::exists(here.file("a.sock")));
    std::filesystem::rename(here.file("a.sock"), here.file("c.sock"));
    second.remove();
    EXPECT_TRUE(std::filesystem::exists(here.file("c.sock")));
}

TEST(ListeningSocket, IsNotRemovedByAChild)
{
    const folder here;
    auto made = std::make_unique<listening_socket>(here.file("a.sock"), std::nullopt);
    const pid_t child = fork();
    if (child == 0) {
        made.reset();
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(std::filesystem::exists(here.file("a.sock")));
}

// 0: it serves until `end` has no writer any more. 1: another one does. 2: something is wrong.
int serve_until(int end, const std::string &path)
{
    try {
        const listening_socket made(path, std::nullopt);
        char octet = 0;
        return read(end, &octet, 1) == 0 ? 0 : 2;
    } catch (const socket_error &refused) {
        return std::string(refused.what()).ends_with("another process serves it") ? 1 : 2;
    }
}

TEST(ListeningSocket, OneOfThoseThatStartTogetherReplacesWhatIsStale)
{
    const folder here;
    leave_stale(here.file("a.sock"));
    std::array<int, 2> end{};
    ASSERT_EQ(pipe(end.data()), 0);
    constexpr int starters = 8;
    for (int i = 0; i < starters; ++i)
        if (fork() == 0) {
            close(end[1]);
            _exit(serve_until(end[0], here.file("a.sock")));
        }
    std::array<int, 3> outcomes{};
    for (int ended = 0; ended < starters; ++ended) {
        if (ended == starters - 1)
            close(end[1]);
        int status = 0;
        wait(&status);
        ++outcomes.at(static_cast<size_t>(WEXITSTATUS(status)));
    }
    close(end[0]);
    EXPECT_THAT(outcomes, testing::ElementsAre(1, starters - 1, 0));
}

} // namespace
} // namespace sockets
