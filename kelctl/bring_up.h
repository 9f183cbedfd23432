// Ordered steps, each with what undoes it: brought up from the first, taken down from the last. Knows nothing of what
// the steps do.
#pragma once

#include "kelctl/operation.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What a step makes, as people call it: {"path", "paths", "removed"}. What there is one of has no word for several.
struct product {
    std::string_view one = {};
    std::string_view several = {};
    std::string_view undone = {}; // what has become of it then
};

struct step {
    operation make;
    operation undo;
    product makes = {};
    // Whether a failed `make` may leave something that `undo` removes. It may find nothing then, and be refused.
    bool failure_leaves_something = false;
};

struct undone_step {
    std::string operation;
    product made;
    std::vector<trace_entry> complaints; // failures that its records tell of, though it succeeded
};

struct refused_undo {
    failure why;
    product made;
};

struct take_down {
    std::vector<undone_step> undone; // in the order of their undoing
    std::vector<refused_undo> refused;
    // What came of removing what a failed step may have left. Means something only when something is left.
    std::optional<refused_undo> refused_leftover;
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

    // Nobody takes it down any more: the steps that are made, in the order of their making.
    std::span<const step> let_stand();

private:
    std::optional<refused_undo> undo(const step &made, take_down &done);

    std::vector<step> steps_;
    trace_log &log_;
    size_t made_ = 0;
    bool failed_ = false;
};

} // namespace kelctl
