/*
 * instance.h - the one node of this process, what its calls meet, and the lock around both.
 *
 * The adapters of the closed libraries and the control interface share it; the engine does not know of it.
 */
#ifndef SOFTNODE_INSTANCE_H
#define SOFTNODE_INSTANCE_H

#include "softnode/faults/fault_book.h"
#include "softnode/faults/trial.h"
#include "softnode/node/node.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

namespace softnode
{

/** The node, the lock around it, and what threads wait for while they let go of the lock. */
struct Instance {
    std::mutex mutex;
    std::condition_variable_any event_posted; /* or the node was switched off */
    std::condition_variable_any user_moved;   /* a timing-unit user began to wait, was blocked, or ended */
    std::condition_variable_any released;     /* blocked calls may go on, or the node was switched off */
    Node node;
    FaultBook faults;
    std::optional<Trial> trial; /* in a run of a sweep */
    std::string wrong_faults;   /* what is wrong with those of the environment: then nothing can be done here */

    /** Back to a node just switched on, without fault rules. */
    void reset();
};

/**
 * Created on first use, with the fault rules of KEL_SOFTNODE_FAULTS; when one of them cannot be read, says so on
 * standard error and ends the process with status 2. Never destroyed: a timestamp thread may still be inside at exit.
 */
Instance &instance();

/** Creates it now. Says what is wrong with the rules instead of ending the process; empty when nothing is. */
const std::string &switch_on();

/**
 * Puts a node just switched on, without fault rules, not even those of KEL_SOFTNODE_FAULTS, in the place of this one.
 * For a child process of one thread.
 */
void start_over();

/** Runs `work` on the instance, alone. */
template <class Work> auto with_instance(Work work)
{
    Instance &here = instance();
    const std::lock_guard alone(here.mutex);
    return work(here);
}

/** Runs `work` on the node, alone. */
template <class Work> auto with_node(Work work)
{
    return with_instance([&](Instance &here) { return work(here.node); });
}

} // namespace softnode

#endif
