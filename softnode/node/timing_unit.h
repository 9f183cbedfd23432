/*
 * timing_unit.h - the timing unit: its reading, the connections to it, and the events they get.
 *
 * It never blocks and knows no threads: a connection's user is a number here. Waiting is done by closed/vorn_tu.cpp,
 * which asks again after every event.
 */
#ifndef SOFTNODE_TIMING_UNIT_H
#define SOFTNODE_TIMING_UNIT_H

#include "softnode/common/facts.h"
#include "softnode/common/registry.h"
#include "softnode/common/user.h"
#include "softnode/platform.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace softnode
{

/**
 * Event records. A record keeps its address, and is used again once it came back. A record that is out when the node
 * is switched off is left to whoever is still reading it.
 */
class EventRecords
{
public:
    vorn_tu_event *hand_out(const vorn_tu_event &event);
    void take_back(vorn_tu_event *record);

private:
    std::deque<vorn_tu_event> records_;
    std::vector<vorn_tu_event *> free_;
};

struct Connection {
    User user = 0; /* who opened it, or waited on it last */
    bool subscribed = false;
    std::deque<vorn_tu_event> events;      /* posted, not taken yet */
    std::set<vorn_tu_event *> outstanding; /* taken, not handed back yet */
};

enum class ConnectionState {
    working, /* its user is alive and elsewhere */
    waiting, /* its user waits on it, with no event left */
    blocked, /* its user is held */
    ended    /* its user has ended */
};

/** "working" and so on. */
const char *name_of(ConnectionState state);

class TimingUnit
{
public:
    /* A user is waited for, by settled(), from joining until leaving. Joining twice changes nothing. */
    void join(User user);
    void leave(User user);

    Handle open(User user);
    Refusal subscribe(Handle connection, std::int32_t domain);

    /** Posts an event to every connection that subscribed. */
    void post(const vorn_tu_event &event);

    /** Takes the connection's next event. With none there it grants null, and the user counts as waiting. */
    Refusal take_event(Handle connection, User user, vorn_tu_event *&event);

    /** Takes back an event that this connection took. */
    Refusal give_back(Handle connection, vorn_tu_event *event);

    Refusal read(Handle connection, vorn_tu_nputimeoffset &reading) const;
    void set_reading(const vorn_tu_nputimeoffset &reading);

    /* A user whose call is blocked is held until everybody is let go. What the call is, only the caller knows. */
    void hold(User user, std::size_t call);
    bool holds(User user) const;
    /** Answers how many were held. */
    std::size_t let_go();

    /** Whether somebody has joined, and everybody who has not left is at rest. */
    bool settled() const;

    /** How many users wait with no event left for them, or are held. */
    std::size_t users_at_rest() const;

    const vorn_tu_nputimeoffset &reading() const;
    const Registry<Connection> &connections() const;
    ConnectionState state(Handle connection) const;

    /** Those who are held: the call, as hold() was given it, by user. */
    const std::map<User, std::size_t> &held() const;

    void reset();

private:
    bool rests(User user) const;
    void review(User user);
    void change_user(Handle connection, User user);

    vorn_tu_nputimeoffset reading_{facts::first_cycles, facts::first_frequency};
    Registry<Connection> connections_{Kind::timing_connection};
    EventRecords records_;
    bool anybody_joined_ = false;
    std::map<User, Handle> waits_on_; /* everybody who has not left; null: does not wait */
    std::map<User, std::size_t> held_;
    std::set<std::pair<User, Handle>> unread_; /* connections with events left, by their users */
    std::set<User> at_rest_;
};

} // namespace softnode

#endif
