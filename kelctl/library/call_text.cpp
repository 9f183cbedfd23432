// The text for each type. Rates and sizes get their units here: the library's records are in kbit/s, octets and blocks.
#include "kelctl/library/call_text.h"

#include "kelctl/values/ic_port.h"
#include "kelctl/values/limits.h"
#include "kelctl/values/quantity_messages.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <iterator>

namespace kelctl
{
namespace
{

// 24 bits, the lowest octet first.
uint32_t remote_id_of(const kel_pcep_config &pcep)
{
    uint32_t id = 0;
    for (size_t i = 0; i < std::size(pcep.remote_pcep_id); ++i)
        id |= uint32_t{pcep.remote_pcep_id[i]} << 8 * i;
    return id;
}

// Rate, burst and threshold count for a shaped path only.
std::string shaping_text(const kel_ebcom_path_config &path)
{
    if (path.shaping_enabled == 0)
        return "unshaped";
    return fmt::format("rate={}, burst={}, threshold={}", quantity_text(path.shaping_rate, rate_units),
                       quantity_text(path.burst_size, size_units),
                       quantity_text(uint64_t{path.buffer_threshold} * threshold_block, size_units));
}

} // namespace

std::string argument_text(std::string_view name, int64_t number)
{
    return fmt::format("{}={}", name, number);
}

std::string argument_text(std::string_view name, const mac_address &mac)
{
    return fmt::format("{}={}", name, to_text(mac));
}

std::string argument_text(std::string_view name, const std::array<uint8_t, 2> &numbers)
{
    return fmt::format("{}={}", name, text::joined(numbers, ", "));
}

std::string argument_text(std::string_view, const kel_ebcom_global_params &params)
{
    return fmt::format("icPortMTU={}, etherType=0x{:04x}", params.icPortMTU, params.etherType);
}

std::string argument_text(std::string_view, const kel_ebcom_path_config &path)
{
    return fmt::format("dst_mac={}, port={}, {}", to_text(mac_address_at(path.dst_mac)), port_text(path.iell_port),
                       shaping_text(path));
}

std::string argument_text(std::string_view, const kel_pcep_config &pcep)
{
    return fmt::format("remote_pcep_id={}, local_mac={}, remote_mac={}, vlan_id={}, priority={}", remote_id_of(pcep),
                       to_text(mac_address_at(pcep.local_mac)), to_text(mac_address_at(pcep.remote_mac)), pcep.vlan_id,
                       pcep.priority);
}

} // namespace kelctl
