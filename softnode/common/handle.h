/*
 * handle.h - handles as the node issues them: a kind and a serial number, never an address.
 *
 * Serial numbers count from 1 per kind and are not used again, not even after the node was switched off and on, until
 * 2^32 - 1 objects of a kind have been made.
 * So a wrong handle is always distinguished from a stale one, no handle is ever dereferenced, and the same calls yield the
 * same handles in every run.
 */
#ifndef SOFTNODE_HANDLE_H
#define SOFTNODE_HANDLE_H

#include "softnode/common/refusal.h"

#include <cstdint>
#include <string>

namespace softnode
{

/* The upper 32 bits of a handle. */
enum class Kind : std::uint32_t {
    system = 0x50,
    driver_kit = 0x51,
    ehsfp_target = 0x52,
    pcep = 0x54,
    multicast_group = 0x55,
    scheduler = 0x5c,
    queue = 0x5d,
    timing_connection = 0x60,
};

enum class Handle : std::uint64_t { null = 0 };

/* The closed libraries pass handles as pointers. Neither direction touches what the pointer would point to. */
Handle handle_of(const void *pointer);
void *pointer_of(Handle handle);

/** "0x5c00000001", as %p prints it. */
std::string text_of(Handle handle);

/** Issues the handles of one kind and judges those that come back. */
class HandleSeries
{
public:
    explicit HandleSeries(Kind kind);

    Handle next();

    /** granted when the handle's object is alive; otherwise gone when it once was issued, else invalid. */
    Refusal judge(Handle handle, bool alive) const;

private:
    std::uint64_t base_;
    std::uint32_t issued_ = 0;
};

} // namespace softnode

#endif
