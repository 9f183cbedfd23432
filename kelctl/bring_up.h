// Ordered steps, each with what undoes it: brought up from the first, taken down from the last. Knows nothing of what
// the steps do.
#pragma once

#include "kelctl/operation.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace kelctl
{

struct step {
    operation make;
    operation undo;
    // Whether a failed `make` may leave something that `undo` removes. It may find nothing then, and be refused.
    bool failure_leaves_something = false;
};

struct take_down {
    std::vector<failure> failures;
    // What came of removing what a failed step may have left. Means something only when something is left.
    std::optional<failure> refused_leftover;
};

// Told after each step that was made, with how many were by then.
using step_listener = std::function<void(size_t made)>;

// Asked before each step: true stops there.
using stop_question = std::function<bool()>;

class bring_up
{
public:
    bring_up(std::vector<step> steps, trace_log &log);
    ~bring_up(); // takes down what still stands
    bring_up(const bring_up &) = delete;
    bring_up &operator=(const bring_up &) = delete;

    // Makes the steps that are not made yet. Stops at the first failure, and when told to; what was made before it
    // stands.
    std::optional<failure> up(
        const step_listener &on_made, const stop_question &stop = [] { return false; });

    // Whether all steps are made.
    bool whole() const;

    // Undoes what stands, and what the failed step may have left. Goes on after failures.
    take_down down();

private:
    std::vector<step> steps_;
    trace_log &log_;
    size_t made_ = 0;
    bool failed_ = false;
};

} // namespace kelctl
