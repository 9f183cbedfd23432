// The counters of everything that stands, read through the library.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/node/port_knowledge.h"
#include "kelctl/session/session.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

struct queue_counters {
    int32_t port = 0;
    std::optional<ebcom_queue_stats> stats; // none: the library finds the queue by no destination
};

struct pcep_counters {
    uint32_t id = 0;
    std::string text; // the formatting library's: what each of them counts, only the platform knows
};

// How the formatting library lays its texts out; its own numbers.
enum class counter_text : uint8_t { table = 0, json = 2 };

// What could not be read is left out, and among the failures.
struct statistics {
    std::string ebcom; // the formatting library's text
    std::vector<queue_counters> queues;
    std::vector<pcep_counters> pceps;
    std::vector<failure> failures;
};

// Of the service, of the queues that are known, and of the PCEPs that the session made.
statistics read_statistics(const port_knowledge &ports, session &session, counter_text layout = counter_text::table);

} // namespace kelctl
