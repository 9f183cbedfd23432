/*
 * agenda.h - whose shaper opens when: the earliest first, and of those at one instant the one that was attached first.
 */
#ifndef SOFTNODE_AGENDA_H
#define SOFTNODE_AGENDA_H

#include "softnode/traffic/child.h"

#include <vector>

namespace softnode
{

class Agenda
{
public:
    /** Adds a child that is not in it. */
    void put(Child &child);

    /** When the first one opens. */
    Future next() const;

    /** Takes out the first one; there is one. */
    Child &take();

    /** Removes a child, if it is in it. */
    void remove(Child &child);

    void clear();

private:
    std::vector<Child *> heap_;
};

} // namespace softnode

#endif
