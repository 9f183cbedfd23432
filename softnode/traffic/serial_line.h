/*
 * serial_line.h - the line: it carries one frame after the other, at facts::line_rate, each behind a preamble and
 * followed by a gap.
 *
 * Frames leave at whole nanoseconds, the line counts their parts: frames of 51.2 nanoseconds each that wait for nothing
 * else leave at 0, 52, 103, 154, 205, 256.
 */
#ifndef SOFTNODE_SERIAL_LINE_H
#define SOFTNODE_SERIAL_LINE_H

#include "softnode/traffic/virtual_clock.h"

#include <cstdint>

namespace softnode
{

class SerialLine
{
public:
    /** There is something to send from this instant on: what the line was idle for until now is lost. */
    void settle(Instant now);

    /** The first instant at which a frame can leave. */
    Future free_at() const;

    /** A frame leaves at free_at(). Returns when its last bit has. */
    Future send(std::uint32_t octets);

private:
    Future free_ = 0;             /* whole nanoseconds, and beyond them */
    std::uint64_t microbits_ = 0; /* so much, as time */
};

} // namespace softnode

#endif
