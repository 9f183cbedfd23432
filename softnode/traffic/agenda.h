/*
 * agenda.h - who is due when: at most one instant for each handle, the earliest first, and of those due at one instant
 * the one with the lowest handle.
 */
#ifndef SOFTNODE_AGENDA_H
#define SOFTNODE_AGENDA_H

#include "softnode/common/handle.h"
#include "softnode/traffic/virtual_clock.h"

#include <map>
#include <optional>
#include <set>
#include <utility>

namespace softnode
{

class Agenda
{
public:
    struct Entry {
        Instant when = 0;
        Handle who = Handle::null;
    };

    /** Enters a handle, in place of when it was due so far; null: it is not due any more. */
    void put(Handle who, std::optional<Instant> when);

    /** When the first one is due; null: nobody is. */
    std::optional<Instant> next() const;

    /** Takes out the first one, provided it is due by now. */
    std::optional<Entry> take_due(Instant now);

private:
    std::map<Handle, Instant> due_;
    std::set<std::pair<Instant, Handle>> order_;
};

} // namespace softnode

#endif
