/*
 * port.h - the port: a tree of schedulers and queues over one line; which frame leaves next, and when.
 *
 * A frame leaves when the line is free, no shaper on its way from the queue to the port is shut, and it is its turn
 * there at every scheduler. The schedulers directly below the port take turns as well. All that shapers and turns
 * decide happens at whole nanoseconds, in one order, so it is the same however time is cut.
 *
 * The schedulers and queues are the caller's.
 */
#ifndef SOFTNODE_PORT_H
#define SOFTNODE_PORT_H

#include "softnode/traffic/agenda.h"
#include "softnode/traffic/queue.h"
#include "softnode/traffic/scheduler.h"
#include "softnode/traffic/serial_line.h"

#include <cstdint>
#include <optional>
#include <span>

namespace softnode
{

struct Departure {
    Frame frame;
    Instant left = 0;   /* its first bit did */
    Future arrives = 0; /* its last bit has left; before the next frame leaves */
    Handle queue = Handle::null;
};

class Port
{
public:
    /** Hangs a child below a scheduler that hangs here, or null: below the port itself. */
    void attach(Child &child, Scheduler *above);

    /** Takes away a child, with all that waits in it. */
    void detach(Child &child);

    /**
     * Frames enter a queue, at this instant: see Queue::enter. All that leave by now have left. The first frame has to
     * enter alone, as it may leave at once.
     *
     * @return how many were dropped
     */
    std::uint64_t enter(Queue &queue, std::span<const Mac> destinations, const Frames &frames, Instant now);

    /** The next frame leaves of all that leave up to this instant; null: none is left of these. */
    std::optional<Departure> depart(Instant now);

    /** Forgets all that hangs here. */
    void reset();

private:
    bool open(const Child &child, Instant now) const;
    void activate(Child &child, Instant now);
    Departure leave(Instant now);
    template <class Kind> void pass(Kind &child, std::uint32_t octets, Instant now);

    Scheduler root_{Shaper({}, 0), 0};
    SerialLine line_;
    Agenda openings_;
    std::uint64_t attached_ = 0;
};

} // namespace softnode

#endif
