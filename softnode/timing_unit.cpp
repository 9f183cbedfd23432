/*
 * timing_unit.cpp - connections, events and readings of the timing unit.
 */
#include "softnode/timing_unit.h"

#include <algorithm>
#include <utility>

namespace softnode
{

const char *name_of(ConnectionState state)
{
    switch (state) {
    case ConnectionState::working:
        return "working";
    case ConnectionState::waiting:
        return "waiting";
    case ConnectionState::blocked:
        return "blocked";
    case ConnectionState::ended:
        return "ended";
    }
    return "";
}

vorn_tu_event *EventRecords::hand_out(const vorn_tu_event &event)
{
    if (free_.empty())
        return &records_.emplace_back(event);

    vorn_tu_event *record = free_.back();
    free_.pop_back();
    *record = event;
    return record;
}

void EventRecords::take_back(vorn_tu_event *record)
{
    free_.push_back(record);
}

void TimingUnit::arrive(User user)
{
    anybody_arrived_ = true;
    waits_on_.emplace(user, Handle::null);
}

void TimingUnit::leave(User user)
{
    waits_on_.erase(user);
}

Handle TimingUnit::open(User user)
{
    Connection connection;
    connection.user = user;
    return connections_.add(std::move(connection));
}

Refusal TimingUnit::subscribe(Handle connection, std::int32_t domain)
{
    if (const Refusal refusal = connections_.check(connection))
        return refusal;
    if (domain != facts::timing_domain)
        return Refusal::no_domain;

    connections_.at(connection).subscribed = true;
    return Refusal::granted;
}

void TimingUnit::post(const vorn_tu_event &event)
{
    for (auto &[handle, connection] : connections_)
        if (connection.subscribed)
            connection.events.push_back(event);
}

Refusal TimingUnit::take_event(Handle connection, User user, vorn_tu_event *&event)
{
    if (const Refusal refusal = connections_.check(connection))
        return refusal;

    Connection &source = connections_.at(connection);
    source.user = user;
    arrive(user);
    if (source.events.empty()) {
        waits_on_[user] = connection;
        event = nullptr;
        return Refusal::granted;
    }
    waits_on_[user] = Handle::null;
    event = records_.hand_out(source.events.front());
    source.events.pop_front();
    source.outstanding.insert(event);
    return Refusal::granted;
}

Refusal TimingUnit::give_back(Handle connection, vorn_tu_event *event)
{
    if (const Refusal refusal = connections_.check(connection))
        return refusal;
    if (!connections_.at(connection).outstanding.erase(event))
        return Refusal::invalid;

    records_.take_back(event);
    return Refusal::granted;
}

Refusal TimingUnit::read(Handle connection, vorn_tu_nputimeoffset &reading) const
{
    if (const Refusal refusal = connections_.check(connection))
        return refusal;

    reading = reading_;
    return Refusal::granted;
}

void TimingUnit::set_reading(const vorn_tu_nputimeoffset &reading)
{
    reading_ = reading;
}

void TimingUnit::hold(User user, std::size_t function)
{
    arrive(user);
    held_[user] = function;
}

bool TimingUnit::holds(User user) const
{
    return held_.contains(user);
}

std::size_t TimingUnit::let_go()
{
    const std::size_t count = held_.size();
    held_.clear();
    return count;
}

bool TimingUnit::settled() const
{
    return anybody_arrived_ && users_at_rest() == waits_on_.size();
}

std::size_t TimingUnit::users_at_rest() const
{
    const auto rests = [this](const auto &entry) {
        const auto [user, waits_on] = entry;
        return holds(user) || (waits_on != Handle::null && took_all_events(user));
    };
    return static_cast<std::size_t>(std::count_if(waits_on_.begin(), waits_on_.end(), rests));
}

const vorn_tu_nputimeoffset &TimingUnit::reading() const
{
    return reading_;
}

const Registry<Connection> &TimingUnit::connections() const
{
    return connections_;
}

ConnectionState TimingUnit::state(Handle connection) const
{
    const auto user = waits_on_.find(connections_.at(connection).user);
    if (user == waits_on_.end())
        return ConnectionState::ended;
    if (holds(user->first))
        return ConnectionState::blocked;
    const bool waits = user->second == connection && connections_.at(connection).events.empty();
    return waits ? ConnectionState::waiting : ConnectionState::working;
}

const std::map<User, std::size_t> &TimingUnit::held() const
{
    return held_;
}

void TimingUnit::reset()
{
    reading_ = {facts::first_cycles, facts::first_frequency};
    connections_.clear();
    anybody_arrived_ = false;
    waits_on_.clear();
    held_.clear();
}

bool TimingUnit::took_all_events(User user) const
{
    return std::all_of(connections_.begin(), connections_.end(),
                       [user](const auto &entry) { return entry.second.user != user || entry.second.events.empty(); });
}

} // namespace softnode
