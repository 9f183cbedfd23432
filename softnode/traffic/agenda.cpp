/*
 * agenda.cpp - a heap.
 */
#include "softnode/traffic/agenda.h"

#include <algorithm>

namespace softnode
{

namespace
{

/* A shaper that is shut opens when it said: nothing passes it until then. */
bool later(const Child *left, const Child *right)
{
    const Future of_left = left->shaper.opens_at();
    const Future of_right = right->shaper.opens_at();
    return of_left != of_right ? of_left > of_right : left->serial > right->serial;
}

} // namespace

void Agenda::put(Child &child)
{
    child.awaited = true;
    heap_.push_back(&child);
    std::push_heap(heap_.begin(), heap_.end(), later);
}

Future Agenda::next() const
{
    return heap_.empty() ? never : heap_.front()->shaper.opens_at();
}

Child &Agenda::take()
{
    std::pop_heap(heap_.begin(), heap_.end(), later);
    Child &first = *heap_.back();
    heap_.pop_back();
    first.awaited = false;
    return first;
}

void Agenda::remove(Child &child)
{
    if (std::erase(heap_, &child) == 0)
        return;
    std::make_heap(heap_.begin(), heap_.end(), later);
    child.awaited = false;
}

void Agenda::clear()
{
    heap_.clear();
}

} // namespace softnode
