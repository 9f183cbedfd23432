/*
 * serving.cpp - the thread that serves, and what keeps it apart from fork() and exit().
 *
 * A request and a fork exclude each other: a child would find the node's lock taken by a thread that it does not have.
 */
#include "softnode/serving/serving.h"

#include "notation/document.h"
#include "socket/server.h"
#include "softnode/serving/requests.h"
#include "softnode/serving/turn.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <mutex>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <thread>
#include <unistd.h>

namespace softnode
{

namespace
{

constexpr const char *socket_variable = "KEL_SOFTNODE_SOCKET";
constexpr sockets::protocol spoken{"softnode", 1};

struct Serving {
    explicit Serving(const std::string &path)
        : server({.path = path}, spoken, {{"program", program_invocation_short_name}, {"pid", getpid()}})
    {
    }

    sockets::server server;
    Turn turn;
};

/* Never destroyed: its thread does not end before the process. Null in a child, and from exit() on. */
std::atomic<Serving *> served = nullptr;

/* A request that takes longer, such as hours of traffic, does not hold up a fork or an exit any more. */
constexpr std::chrono::seconds longest_wait(1);

/* Of this thread, which forks: what it keeps requests away from, and whether the last one is finished. */
thread_local Serving *kept = nullptr;
thread_local bool finished = false;

void before_fork()
{
    kept = served;
    finished = kept && kept->turn.keep_away(longest_wait);
}

void after_fork_in_parent()
{
    if (kept)
        kept->turn.let_in();
}

void after_fork_in_child()
{
    if (finished)
        kept->server.leave_to_parent();
    served = nullptr;
}

void end_at_exit()
{
    Serving *const here = served.exchange(nullptr);
    if (!here)
        return;
    here->server.withdraw();
    here->turn.keep_away(longest_wait);
}

[[noreturn]] void serve(Serving &here)
{
    for (;;) {
        pollfd wanted{.fd = here.server.number(), .events = POLLIN, .revents = 0};
        poll(&wanted, 1, -1);
        const std::lock_guard mine(here.turn);
        here.server.serve(answer_to);
    }
}

/* The mask is the new thread's from its first instruction on. */
void start_thread(Serving &here)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread thread([&here] { serve(here); });
        pthread_setname_np(thread.native_handle(), "kel-softnode");
        thread.detach();
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace

void serve_from_environment()
{
    const char *const path = secure_getenv(socket_variable);
    if (!path || *path == '\0')
        return;
    try {
        auto fresh = std::make_unique<Serving>(path);
        pthread_atfork(before_fork, after_fork_in_parent, after_fork_in_child);
        std::atexit(end_at_exit);
        start_thread(*fresh);
        served = fresh.release();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "libkel-softnode: %s: %s\n", socket_variable, error.what());
    }
}

} // namespace softnode
