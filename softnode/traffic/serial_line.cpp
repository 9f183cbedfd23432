/*
 * serial_line.cpp - how long the line is busy.
 */
#include "softnode/traffic/serial_line.h"

#include <algorithm>

namespace softnode
{

SerialLine::SerialLine(Rate rate) : rate_(rate)
{
}

void SerialLine::settle(Instant now)
{
    busy_until_ = std::max(busy_until_, moved(rate_, now));
}

std::optional<Instant> SerialLine::free_at() const
{
    return instant_at(time_to_move(busy_until_, rate_));
}

Lead SerialLine::lead(Instant now) const
{
    return lead_of(moved(rate_, now) - busy_until_, rate_);
}

void SerialLine::send(std::uint32_t octets, Instant now, const Lead &lead)
{
    busy_until_ = std::max(busy_until_, moved(rate_, now) - moved(rate_, lead)) + microbits_of(octets);
}

} // namespace softnode
