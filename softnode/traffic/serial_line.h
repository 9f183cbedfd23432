/*
 * serial_line.h - a line that carries one frame after the other at a rate: each keeps it busy for the time that its
 * octets take. A frame leaves when its turn on the line begins: frames of 51.2 nanoseconds each that wait for nothing
 * else leave at 0, 52, 103, 154, 205, 256.
 */
#ifndef SOFTNODE_SERIAL_LINE_H
#define SOFTNODE_SERIAL_LINE_H

#include "softnode/traffic/rate.h"
#include "softnode/traffic/virtual_clock.h"

#include <cstdint>
#include <optional>

namespace softnode
{

class SerialLine
{
public:
    /** The rate is not 0. */
    explicit SerialLine(Rate rate);

    /** A frame comes, and may leave at this instant with no lead: what the line was idle for until now is lost. */
    void settle(Instant now);

    /** The first instant at which a frame can leave; null: never, the line is busy until the end of time. */
    std::optional<Instant> free_at() const;

    /** The lead of a frame that waited for the line alone, at an instant no earlier than free_at(). */
    Lead lead(Instant now) const;

    /** A frame leaves, at an instant no earlier than free_at(), with a lead no longer than lead(). */
    void send(std::uint32_t octets, Instant now, const Lead &lead);

private:
    Rate rate_;
    Microbits busy_until_ = 0; /* as time: what the line could have moved since time 0 */
};

} // namespace softnode

#endif
