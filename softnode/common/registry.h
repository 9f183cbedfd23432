/*
 * registry.h - the objects of one kind, by handle. Iterating goes in the order of creation.
 */
#ifndef SOFTNODE_REGISTRY_H
#define SOFTNODE_REGISTRY_H

#include "softnode/common/handle.h"

#include <cstddef>
#include <map>
#include <utility>

namespace softnode
{

template <class Object> class Registry
{
public:
    explicit Registry(Kind kind) : series_(kind)
    {
    }

    /** Makes an object in its place, where it stays. */
    template <class... Parts> Handle add(Parts &&...parts)
    {
        const Handle handle = series_.next();
        objects_.try_emplace(handle, std::forward<Parts>(parts)...);
        return handle;
    }

    /** Whether the handle names an object here: granted, gone or invalid. */
    Refusal check(Handle handle) const
    {
        return series_.judge(handle, objects_.contains(handle));
    }

    /** The object of a handle that check() granted. */
    Object &at(Handle handle)
    {
        return objects_.at(handle);
    }

    const Object &at(Handle handle) const
    {
        return objects_.at(handle);
    }

    void remove(Handle handle)
    {
        objects_.erase(handle);
    }

    /** Removes every object. Their handles are stale from now on. */
    void clear()
    {
        objects_.clear();
    }

    std::size_t size() const
    {
        return objects_.size();
    }

    auto begin() const
    {
        return objects_.begin();
    }

    auto end() const
    {
        return objects_.end();
    }

    auto begin()
    {
        return objects_.begin();
    }

    auto end()
    {
        return objects_.end();
    }

private:
    HandleSeries series_;
    std::map<Handle, Object> objects_;
};

} // namespace softnode

#endif
