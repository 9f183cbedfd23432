// A node brought up from its file, shown and taken down: the work of `kelctl up`, and of the shell around its lines.
#pragma once

#include "kelctl/bring_up.h"
#include "kelctl/node_file.h"
#include "kelctl/node_steps.h"
#include "kelctl/node_view.h"
#include "kelctl/rates.h"
#include "kelctl/redrawn_block.h"
#include "kelctl/result.h"
#include "kelctl/session.h"
#include "kelctl/snapshot.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace kelctl
{

// How fast a watch goes: real time from one step to the next, and virtual time that passes with each.
struct watch_pace {
    std::chrono::milliseconds interval{200};
    uint64_t step = 200'000'000;   // nanoseconds, as is the end
    std::optional<uint64_t> end{}; // none: Ctrl-C
};

// Tells people what it does as it does it, and keeps everything for the result.
class node_from_file
{
public:
    node_from_file(std::unique_ptr<node_file> file, session &session);

    // True when all of it stands.
    bool up();

    // True when all of it could be read.
    bool show();

    // The same in two parts.
    void show_objects();
    bool show_counters();

    // Lets the file's traffic pass and shows rates at every step, until the time is up, Ctrl-C, or nobody reads on. True
    // when all counters could be read. Only where there is virtual traffic, and after show_objects().
    bool watch(const watch_pace &pace);

    // Leaves it as it is until Ctrl-C or SIGTERM, or until nobody reads on.
    void hold();

    // Takes down what stands. True when every operation succeeded and nothing is left.
    bool down();

    // Leaves for good what stands before a step that failed. False, and nothing has changed, when none has failed.
    bool keep();

    // All that was told, and how it went.
    result take_result(bool succeeded);

private:
    bool make_steps();
    void show_rates(const rates &shown, uint64_t time, redrawn_block &block);
    void tell_take_down(const take_down &done, const std::optional<snapshot> &left);
    void tell_failures(std::vector<failure> failures, std::string_view what);
    void tell_background_failures();

    std::unique_ptr<node_file> file_;
    session &session_;
    node_steps steps_; // those of `all` are the bring-up's
    bring_up node_;
    port_knowledge ports_;
    bool stood_ = false;
    bool step_failed_ = false;
    result result_;
};

// The handler of the command.
result up(const invocation &asked, session &session);

} // namespace kelctl
