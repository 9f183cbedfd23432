// Opening the file, and writing to it behind the program's back.
//
// Everything here has to work between fork() and exec(), in several threads at once, and with descriptors that the
// program closes: so there are atomics and no mutex.
#include "kel-record/preload/call_file.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kel_record
{
namespace
{

// The program's own descriptors count from 0: ours stays out of their way.
constexpr int first_descriptor = 512;

char given[PATH_MAX];     // KEL_RECORD_FILE; empty: nothing is recorded
char path[PATH_MAX + 16]; // of this process's file: there may be a number behind it

std::atomic<bool> given_up;

// Of the process that opened the file, and of the one that is about to: a child of fork() finds its parent's there.
std::atomic<pid_t> owner;
std::atomic<pid_t> opener;

int descriptor = -1;
dev_t device;
ino_t inode;

// While this lives, a write cannot send the thread the signals that it ends programs with.
class signals_held
{
public:
    signals_held()
    {
        sigemptyset(&held_);
        sigaddset(&held_, SIGPIPE);
        sigaddset(&held_, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &held_, &before_);
    }

    ~signals_held()
    {
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

    signals_held(const signals_held &) = delete;
    signals_held &operator=(const signals_held &) = delete;

    // Call it after a write that failed.
    void drop() const
    {
        constexpr timespec at_once = {};
        sigtimedwait(&held_, nullptr, &at_once);
    }

private:
    sigset_t held_;
    sigset_t before_;
};

// Once, whichever thread comes first.
void give_up(int error)
{
    if (!given_up.exchange(true))
        dprintf(STDERR_FILENO, "kel-record: %s: %s: no further calls are recorded\n", path, strerrordesc_np(error));
}

// A pipe that nobody reads keeps nobody waiting.
int open_file(int flags)
{
    const int opened = open(path, O_WRONLY | O_APPEND | O_CLOEXEC | O_NONBLOCK | flags, 0666);
    if (opened < 0)
        return opened;
    const int moved = fcntl(opened, F_DUPFD_CLOEXEC, first_descriptor);
    if (moved < 0) // no descriptor may have such a number
        return opened;
    close(opened);
    return moved;
}

// Device and inode are remembered, to notice when the descriptor has become another file's.
bool keep(int opened)
{
    struct stat facts = {};
    if (opened < 0 || fstat(opened, &facts) != 0) {
        give_up(errno);
        return false;
    }
    descriptor = opened;
    device = facts.st_dev;
    inode = facts.st_ino;
    return true;
}

// The first line says whose calls follow. Control characters of its arguments do not get into the script.
void write_header()
{
    char arguments[256] = {};
    const int file = open("/proc/self/cmdline", O_RDONLY | O_CLOEXEC);
    ssize_t length = read(file, arguments, sizeof arguments - 1);
    close(file);
    while (length > 0 && arguments[length - 1] == '\0')
        --length;
    for (ssize_t i = 0; i < length; ++i)
        if (static_cast<unsigned char>(arguments[i]) <= ' ' || arguments[i] == '\x7f')
            arguments[i] = ' ';
    dprintf(descriptor, "# kel-record " KEL_RECORD_VERSION ", process %d: %s\n", getpid(), arguments);
}

// The file belongs to the process that finds it empty.
bool claim()
{
    struct stat facts = {};
    flock(descriptor, LOCK_EX);
    const bool empty = fstat(descriptor, &facts) == 0 && facts.st_size == 0;
    if (empty)
        write_header();
    flock(descriptor, LOCK_UN);
    return empty;
}

// A file that is not empty belongs to another process: this one takes FILE.PID.
void open_for_this_process()
{
    snprintf(path, sizeof path, "%s", given);
    if (!keep(open_file(O_CREAT)) || claim())
        return;
    close(descriptor);
    snprintf(path, sizeof path, "%s.%d", given, getpid());
    if (keep(open_file(O_CREAT | O_TRUNC)))
        write_header();
}

// One thread of the process opens the file, and the others wait for it.
void take_file()
{
    const pid_t self = getpid();
    if (owner == self)
        return;
    pid_t before = opener;
    if (before != self && opener.compare_exchange_strong(before, self)) {
        open_for_this_process();
        owner = self;
    }
    while (owner != self)
        sched_yield();
}

// A program may close all descriptors that it does not know, and ours then is another file's.
bool is_ours()
{
    struct stat facts = {};
    return fstat(descriptor, &facts) == 0 && facts.st_dev == device && facts.st_ino == inode;
}

// A disk may have room for a part of them: half a line is taken back.
void take_back(ssize_t written)
{
    if (const off_t end = lseek(descriptor, 0, SEEK_CUR); end >= written)
        if (ftruncate(descriptor, end - written) != 0)
            return; // not a file that can be cut, such as a pipe
}

// Before the program can change its environment.
[[gnu::constructor]] void read_environment()
{
    const char *file = secure_getenv("KEL_RECORD_FILE");
    if (file && strlen(file) < sizeof given)
        strcpy(given, file);
}

} // namespace

bool recording()
{
    return given[0] != '\0' && !given_up;
}

// A file that was closed is opened again by its name, and appended to. After any failure nothing more is written: a
// script with a hole in it would repeat something else.
void append(const iovec *parts, int count)
{
    take_file();
    if (given_up || (!is_ours() && !keep(open_file(0))))
        return;
    size_t size = 0;
    for (int i = 0; i < count; ++i)
        size += parts[i].iov_len;
    const signals_held held;
    const ssize_t written = writev(descriptor, parts, count);
    if (written >= 0 && static_cast<size_t>(written) == size)
        return;
    const int error = written < 0 ? errno : ENOSPC;
    held.drop();
    if (written > 0)
        take_back(written);
    give_up(error);
}

void append(const char *lines)
{
    const iovec whole = {const_cast<char *>(lines), strlen(lines)};
    append(&whole, 1);
}

} // namespace kel_record
