// The counters of every object that exists, read through the library. Rates are rates.h, tables views/counter_tables.h.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kelctl/node/port_knowledge.h"
#include "kelctl/session/session.h"

#include <cstdint>
#include <optional>

namespace kelctl
{

// A queue's counters by the names of the record's members.
fields counters_of(const ebcom_queue_stats &stats);

// Which counters are read: of everything, or of one queue, of one PCEP, or of both.
struct counted {
    std::optional<int32_t> port = {};  // the queue's
    std::optional<uint32_t> pcep = {}; // its id

    bool has_queue(int32_t of_port) const
    {
        return port ? *port == of_port : !pcep;
    }
    bool has_pcep(uint32_t id) const
    {
        return pcep ? *pcep == id : !port;
    }
};

// `held` are queues_now() (read_back.h). Of the queues that are known (`queues`: `port`, `name`, and `counters`, null
// where the library finds the queue by no destination), and of the PCEPs that the session made (`pceps`: `id`,
// `counters`). The formatting library's counters have its names: what each of them counts, only the platform knows.
// `delays` are the software accelerator's, of each queue; empty elsewhere. What could not be read is left out, and
// among the failures.
result read_counters(const fields &held, const port_knowledge &ports, const counted &which, session &session);

// The same of everything, and before it the counters of the service (`ebcom`).
result read_statistics(const fields &held, const port_knowledge &ports, session &session);

} // namespace kelctl
