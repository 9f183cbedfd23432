// The live view (`watch`, `up --watch`): samples of a node (node/sample.h), one after the other, and the rates between
// them. Its columns are views/counter_tables.cpp.
//
//     const port_knowledge ports = ports_of(queues_now(), session.paths);
//     return watch(node_here(ports, {}, session), {.end = 1'000'000'000}, session);
#pragma once

#include "kelctl/node/port_knowledge.h"
#include "kelctl/node/sample.h"
#include "kelctl/results/result.h"
#include "kelctl/session/session.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

namespace kelctl
{

// Where samples come from.
struct watched_node {
    std::function<result()> sample; // what take_sample() returns
    // Lets so many nanoseconds of virtual time pass; false: it was interrupted. Null: time passes by itself, and is
    // real.
    std::function<bool(uint64_t)> pass = {};
};

// Of this process. On the software accelerator the watch lets virtual time pass, and with it the session's traffic.
// Both `ports` and `session` must outlive it.
watched_node node_here(const port_knowledge &ports, const counted &which, session &session);

// Of another process: this one asks it for each sample, and for letting time pass. `session` must outlive it.
watched_node node_elsewhere(const counted &which, session &session);

// Nanoseconds. `interval` is real time between two samples; `step` virtual time, where the watch lets it pass; `end`
// time of that kind which passes.
struct watch_options {
    uint64_t interval = 200'000'000;
    uint64_t step = 200'000'000;
    uint64_t end = std::numeric_limits<uint64_t>::max(); // the default: until a signal
    std::string sorted_by = {};                          // one of rate_keys(); empty: as they were made
    std::string plot = {};                               // a file; empty: nothing is drawn
};

// Those that are given; the others as above.
watch_options watch_options_in(const arguments &given);
counted counted_in(const arguments &given);

// Why the options cannot be met here; none: they can.
std::optional<std::string> wrong_watch(const arguments &given);

// Runs until `end`, a signal, the loss of standard output's reader, or a counter that cannot be read, which is a
// failure of the result. Shows each step as JSON or as a block that a terminal redraws, and draws them at the end.
result watch(const watched_node &node, const watch_options &options, session &session);

// The handler of the command: what the session made.
result watch_session(const invocation &asked, session &session);

} // namespace kelctl
