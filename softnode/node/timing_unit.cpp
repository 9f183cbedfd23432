/*
 * timing_unit.cpp - connections, events and readings of the timing unit.
 */
#include "softnode/node/timing_unit.h"

#include <array>
#include <utility>

namespace softnode
{

namespace
{

/* Indexed by ConnectionState. */
constexpr std::array<const char *, 4> state_names{"working", "waiting", "blocked", "ended"};
static_assert(state_names.size() == static_cast<std::size_t>(ConnectionState::ended) + 1);

} // namespace

const char *name_of(ConnectionState state)
{
    return state_names[static_cast<std::size_t>(state)];
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

void TimingUnit::join(User user)
{
    anybody_joined_ = true;
    waits_on_.emplace(user, Handle::null);
    review(user);
}

void TimingUnit::leave(User user)
{
    waits_on_.erase(user);
    review(user);
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
    for (auto &[handle, connection] : connections_) {
        if (!connection.subscribed)
            continue;
        connection.events.push_back(event);
        unread_.emplace(connection.user, handle);
        review(connection.user);
    }
}

Refusal TimingUnit::take_event(Handle connection, User user, vorn_tu_event *&event)
{
    if (const Refusal refusal = connections_.check(connection))
        return refusal;

    join(user);
    change_user(connection, user);
    Connection &source = connections_.at(connection);
    if (source.events.empty()) {
        waits_on_[user] = connection;
        review(user);
        event = nullptr;
        return Refusal::granted;
    }
    event = records_.hand_out(source.events.front());
    source.events.pop_front();
    source.outstanding.insert(event);
    if (source.events.empty())
        unread_.erase({user, connection});
    waits_on_[user] = Handle::null;
    review(user);
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

void TimingUnit::hold(User user, std::size_t call)
{
    held_[user] = call;
    join(user);
}

bool TimingUnit::holds(User user) const
{
    return held_.contains(user);
}

std::size_t TimingUnit::let_go()
{
    const auto held = std::exchange(held_, {});
    for (const auto &[user, call] : held)
        review(user);
    return held.size();
}

bool TimingUnit::settled() const
{
    return anybody_joined_ && users_at_rest() == waits_on_.size();
}

std::size_t TimingUnit::users_at_rest() const
{
    return at_rest_.size();
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
    anybody_joined_ = false;
    waits_on_.clear();
    held_.clear();
    unread_.clear();
    at_rest_.clear();
}

bool TimingUnit::rests(User user) const
{
    const auto entry = waits_on_.find(user);
    if (entry == waits_on_.end())
        return false;
    if (holds(user))
        return true;
    const auto unread = unread_.lower_bound({user, Handle::null});
    const bool took_all_events = unread == unread_.end() || unread->first != user;
    return entry->second != Handle::null && took_all_events;
}

/* After whatever may begin or end a user's rest: so nobody has to be looked for when somebody asks. */
void TimingUnit::review(User user)
{
    if (rests(user))
        at_rest_.insert(user);
    else
        at_rest_.erase(user);
}

void TimingUnit::change_user(Handle connection, User user)
{
    const User before = std::exchange(connections_.at(connection).user, user);
    if (unread_.erase({before, connection}) != 0)
        unread_.emplace(user, connection);
    review(before);
}

} // namespace softnode
