/*
 * child_process.h - work done in a process of its own: what it crashes, hangs or changes is lost with it.
 */
#ifndef SOFTNODE_CHILD_PROCESS_H
#define SOFTNODE_CHILD_PROCESS_H

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace softnode
{

enum class ChildEnd {
    returned, /* the work was done */
    crashed,  /* the process ended before: by a signal, or by itself */
    hung      /* it took too long, and was ended */
};

struct ChildOutcome {
    ChildEnd end = ChildEnd::crashed;
    std::string text; /* what the work yielded; empty unless it returned */
};

/**
 * Runs `work` in a child process and waits for it, until `limit` has passed. The child is a copy of the calling thread
 * alone, and leaves by _exit(): nothing of the caller's is flushed, unwound or destroyed there. It ends with the caller
 * and leaves no core file. Nothing when no child can be made.
 */
std::optional<ChildOutcome> run_in_child(const std::function<std::string()> &work, std::chrono::milliseconds limit);

} // namespace softnode

#endif
