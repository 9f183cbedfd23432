// The signal mask is set for the creation only, and restored.
#include "signal_free_thread.h"

#include <csignal>

namespace
{
constexpr int own_faults[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP};
}

int kel::create_signal_free_thread(pthread_t &thread, void *(*entry)(void *))
{
    sigset_t blocked;
    sigset_t before;
    sigfillset(&blocked);
    for (const int fault : own_faults)
        sigdelset(&blocked, fault);

    char argument = 0;     // the thread never reads it, so it may be gone by then
    pthread_t created = 0; // the C library writes an identifier before it fails, too
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const int rc = pthread_create(&created, nullptr, entry, &argument);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (rc == 0)
        thread = created;
    return rc;
}
