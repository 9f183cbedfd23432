/*
 * serial_line.cpp - how long the line is busy.
 */
#include "softnode/traffic/serial_line.h"

#include "softnode/common/facts.h"
#include "softnode/traffic/rate.h"

namespace softnode
{

void SerialLine::settle(Instant now)
{
    if (free_ >= now)
        return;
    free_ = now;
    microbits_ = 0;
}

Future SerialLine::free_at() const
{
    return free_ + (microbits_ != 0 ? 1 : 0);
}

Future SerialLine::send(std::uint32_t octets)
{
    const std::uint64_t last_bit =
        microbits_ + static_cast<std::uint64_t>(microbits_of(facts::preamble_octets + octets));
    const Future arrives = free_ + time_to_move(last_bit, facts::line_rate);
    const std::uint64_t end = last_bit + microbits_of(facts::gap_octets);
    free_ += end / facts::line_rate;
    microbits_ = end % facts::line_rate;
    return arrives;
}

} // namespace softnode
