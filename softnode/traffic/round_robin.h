/*
 * round_robin.h - whose turn it is among the children of a scheduler that may send: deficit round robin.
 *
 * A turn is worth the child's quantum of octets. It ends with the frame that uses up what is left; what that frame has
 * beyond it is taken off the child's next turn. So children that always may send have octets in proportion to their
 * quanta, within one quantum and one frame, whatever the lengths of their frames.
 */
#ifndef SOFTNODE_ROUND_ROBIN_H
#define SOFTNODE_ROUND_ROBIN_H

#include "softnode/traffic/child.h"

#include <algorithm>
#include <cstdint>

namespace softnode
{

class RoundRobin
{
public:
    bool empty() const
    {
        return !first_;
    }

    /** Has a child take part that does not, after all others. */
    void join(Child &child)
    {
        if (!first_)
            first_ = child.previous = &child;
        child.next = first_;
        child.previous = first_->previous;
        child.previous->next = first_->previous = &child;
    }

    /** Removes a child from the round. The rest of its turn is lost, its debt is not. */
    void leave(Child &child)
    {
        child.credit = std::min<std::int64_t>(child.credit, 0);
        if (first_ == &child)
            first_ = child.next == &child ? nullptr : child.next;
        child.previous->next = child.next;
        child.next->previous = child.previous;
        child.next = nullptr;
    }

    /** Whose turn it is; somebody takes part. */
    Child &turn()
    {
        while (first_->credit <= 0 && (first_->credit += first_->quantum) <= 0)
            first_ = first_->next;
        return *first_;
    }

    /** The child whose turn it is sends a frame. */
    void spend(Child &child, std::uint32_t octets)
    {
        child.credit -= octets;
        if (child.credit <= 0)
            first_ = child.next;
    }

private:
    Child *first_ = nullptr; /* the only one that may have credit */
};

} // namespace softnode

#endif
