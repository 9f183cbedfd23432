/*
 * ebcom_service.cpp - what the EBCOM service takes and refuses.
 */
#include "softnode/node/ebcom_service.h"

#include "softnode/common/facts.h"

namespace softnode
{

Refusal EbcomService::set_globals(const ork_ebcom_global_config &config)
{
    if (config.reserved != 0)
        return Refusal::invalid;

    globals_ = config;
    return Refusal::granted;
}

Refusal EbcomService::create_interface(std::uint16_t eth_dev_id)
{
    if (eth_dev_id != facts::event_device)
        return Refusal::no_device;
    if (interface_device_)
        return Refusal::busy;

    interface_device_ = eth_dev_id;
    return Refusal::granted;
}

Refusal EbcomService::delete_interface(std::uint16_t eth_dev_id)
{
    if (eth_dev_id != facts::event_device)
        return Refusal::no_device;
    if (!interface_device_)
        return Refusal::gone;

    interface_device_.reset();
    return Refusal::granted;
}

void EbcomService::set_timestamp_offset(std::int64_t offset)
{
    timestamp_offset_ = offset;
}

Refusal EbcomService::create_path(const Mac &mac, const Path &path)
{
    if (path.pcep_type < 0 || path.pcep_type > facts::highest_pcep_type)
        return Refusal::invalid;
    if (paths_.size() >= facts::most_paths && !paths_.contains(mac))
        return Refusal::full;

    paths_[mac] = path;
    return Refusal::granted;
}

Refusal EbcomService::delete_path(const Mac &mac)
{
    return paths_.erase(mac) ? Refusal::granted : Refusal::gone;
}

void EbcomService::account(Fate fate, const Frames &frames)
{
    counters_.account(fate, frames);
}

void EbcomService::drop(Drop reason, const Tally &frames)
{
    counters_.add(Fate::dropped, frames);
    dropped_[static_cast<std::size_t>(reason)] += frames;
}

const std::optional<ork_ebcom_global_config> &EbcomService::globals() const
{
    return globals_;
}

std::optional<std::uint16_t> EbcomService::interface_device() const
{
    return interface_device_;
}

std::optional<std::int64_t> EbcomService::timestamp_offset() const
{
    return timestamp_offset_;
}

const std::map<Mac, Path> &EbcomService::paths() const
{
    return paths_;
}

const Counters &EbcomService::counters() const
{
    return counters_;
}

const Tally &EbcomService::dropped(Drop reason) const
{
    return dropped_[static_cast<std::size_t>(reason)];
}

std::uint32_t EbcomService::longest_frame() const
{
    return globals_ ? globals_->icPortMTU + facts::frame_overhead : facts::longest_frame;
}

void EbcomService::reset()
{
    *this = EbcomService{};
}

} // namespace softnode
