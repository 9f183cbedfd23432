/*
 * agenda.cpp - entering and taking out.
 */
#include "softnode/traffic/agenda.h"

namespace softnode
{

void Agenda::put(Handle who, std::optional<Instant> when)
{
    if (const auto entered = due_.find(who); entered != due_.end()) {
        order_.erase({entered->second, who});
        due_.erase(entered);
    }
    if (!when)
        return;
    due_.emplace(who, *when);
    order_.emplace(*when, who);
}

std::optional<Instant> Agenda::next() const
{
    if (order_.empty())
        return std::nullopt;
    return order_.begin()->first;
}

std::optional<Agenda::Entry> Agenda::take_due(Instant now)
{
    if (order_.empty() || order_.begin()->first > now)
        return std::nullopt;

    const auto [when, who] = *order_.begin();
    put(who, std::nullopt);
    return Entry{when, who};
}

} // namespace softnode
