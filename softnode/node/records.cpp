/*
 * records.cpp - the form of the driver kit's records: what may vary is blanked out, the remainder is compared as a
 * whole.
 */
#include "softnode/node/records.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <type_traits>

namespace softnode
{

namespace
{

constexpr std::uint16_t vlan_reserved = 0x8000;
constexpr std::uint32_t local_id_reserved = 0xff000000;
constexpr std::uint16_t group_id_reserved = 0xf000;

template <class Record> bool same(const Record &left, const Record &right)
{
    static_assert(std::has_unique_object_representations_v<Record>, "padding would be compared");
    return std::memcmp(&left, &right, sizeof left) == 0;
}

constexpr ork_bind_params bind_form()
{
    ork_bind_params form{};
    form.word0 = 4;
    form.word4 = 1;
    form.word8 = 1;
    form.word36 = 2;
    form.word60 = 2;
    form.byte84 = 1;
    return form;
}

constexpr ork_ebcom_pcep_params pcep_form()
{
    ork_ebcom_pcep_params form{};
    form.byte28 = 1;
    return form;
}

} // namespace

bool well_formed(const ork_ebcom_pcep_params &params)
{
    ork_ebcom_pcep_params fixed = params;
    std::fill(std::begin(fixed.sMac), std::end(fixed.sMac), std::uint8_t{0});
    std::fill(std::begin(fixed.dMac), std::end(fixed.dMac), std::uint8_t{0});
    fixed.vlan &= vlan_reserved;
    fixed.localPcepId &= local_id_reserved;
    fixed.remotePcepId = 0;
    fixed.word24 = 0;
    return same(fixed, pcep_form());
}

bool well_formed(const ork_bind_params &params)
{
    ork_bind_params fixed = params;
    fixed.ork_handle = nullptr;
    fixed.pcep_id = 0;
    fixed.target = 0;
    return same(fixed, bind_form());
}

bool well_formed(const ork_ebcom_multicast_group &params)
{
    ork_ebcom_multicast_group fixed = params;
    fixed.pcep_id &= group_id_reserved;
    return same(fixed, {});
}

} // namespace softnode
