// A thread that blocks signals, so that no handler of the control process runs on it and interrupts its waits. Nothing
// here traces.
#pragma once

#include <pthread.h>

namespace kel
{

// Creates a thread with default attributes that blocks all signals but those of its own faults. Returns what
// pthread_create() returns; the identifier is written when that is 0.
int create_signal_free_thread(pthread_t &thread, void *(*entry)(void *));

} // namespace kel
