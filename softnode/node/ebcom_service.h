/*
 * ebcom_service.h - the EBCOM service: its Ethernet parameters, its interface, its paths, its timestamp offset, its
 * counters.
 */
#ifndef SOFTNODE_EBCOM_SERVICE_H
#define SOFTNODE_EBCOM_SERVICE_H

#include "softnode/common/counters.h"
#include "softnode/common/handle.h"
#include "softnode/common/mac.h"
#include "softnode/platform.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>

namespace softnode
{

/* The way to one destination MAC address. */
struct Path {
    std::int32_t pcep_type = 0;
    std::uint8_t eioa_port = 0;
    Handle queue = Handle::null; /* may be gone: a path stays when its queue is removed, and leads nowhere then */
};

class EbcomService
{
public:
    Refusal set_globals(const ork_ebcom_global_config &config);

    Refusal create_interface(std::uint16_t eth_dev_id);
    Refusal delete_interface(std::uint16_t eth_dev_id);

    void set_timestamp_offset(std::int64_t offset);

    /** Lays a path through a queue that exists. A path to the same address that is already there is changed to it. */
    Refusal create_path(const Mac &mac, const Path &path);
    Refusal delete_path(const Mac &mac);

    void account(Fate fate, const Frames &frames);

    /** Counts frames as dropped, and why. */
    void drop(Drop reason, const Tally &frames);

    /* What is there; null or empty until set. */
    const std::optional<ork_ebcom_global_config> &globals() const;
    std::optional<std::uint16_t> interface_device() const;
    std::optional<std::int64_t> timestamp_offset() const;
    const std::map<Mac, Path> &paths() const;
    const Counters &counters() const;
    const Tally &dropped(Drop reason) const;

    /** Octets. Only once parameters were set the MTU bounds a frame. */
    std::uint32_t longest_frame() const;

    void reset();

private:
    std::optional<ork_ebcom_global_config> globals_;
    std::optional<std::uint16_t> interface_device_;
    std::optional<std::int64_t> timestamp_offset_;
    std::map<Mac, Path> paths_;
    Counters counters_;
    std::array<Tally, drop_reasons> dropped_{};
};

} // namespace softnode

#endif
