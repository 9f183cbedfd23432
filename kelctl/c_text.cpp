// One form for a report and one for C, side by side for each type.
#include "kelctl/c_text.h"

#include "kelctl/ic_port.h"
#include "kelctl/limits.h"
#include "kelctl/quantity.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <limits>
#include <span>

namespace kelctl
{
namespace
{

std::string initializer(std::span<const uint8_t> octets)
{
    return fmt::format("{{0x{:02x}}}", fmt::join(octets, ", 0x"));
}

uint32_t remote_id_of(const kel_pcep_config &pcep)
{
    uint32_t id = 0;
    for (size_t i = 0; i < std::size(pcep.remote_pcep_id); ++i)
        id |= uint32_t{pcep.remote_pcep_id[i]} << 8 * i;
    return id;
}

std::string shaping_told(const kel_ebcom_path_config &path)
{
    if (path.shaping_enabled == 0)
        return "unshaped";
    return fmt::format("rate={}, burst={}, threshold={}", quantity_text(path.shaping_rate, rate_units),
                       quantity_text(path.burst_size, size_units),
                       quantity_text(uint64_t{path.buffer_threshold} * threshold_block, size_units));
}

std::string shaping_initializer(const kel_ebcom_path_config &path)
{
    if (path.shaping_enabled == 0)
        return "";
    return fmt::format(", .shaping_enabled = 1, .shaping_rate = {}, .buffer_threshold = {}, .burst_size = {}",
                       path.shaping_rate, path.buffer_threshold, path.burst_size);
}

// Only printable characters stand for themselves; "??" could begin a trigraph.
bool is_plain(char c)
{
    return c >= ' ' && c <= '~' && c != '"' && c != '\\' && c != '?';
}

} // namespace

std::string told(std::string_view name, const mac_address &mac)
{
    return fmt::format("{}={}", name, to_text(mac));
}

std::string c_definition(std::string_view name, const mac_address &mac)
{
    return fmt::format("uint8_t {}[6] = {}", name, initializer(mac.octets));
}

std::string told(std::string_view name, const std::array<uint8_t, 2> &numbers)
{
    return fmt::format("{}={}", name, fmt::join(numbers, ", "));
}

std::string c_definition(std::string_view name, const std::array<uint8_t, 2> &numbers)
{
    return fmt::format("uint8_t {}[2] = {{{}}}", name, fmt::join(numbers, ", "));
}

std::string told(std::string_view, const kel_ebcom_global_params &params)
{
    return fmt::format("icPortMTU={}, etherType=0x{:04x}", params.icPortMTU, params.etherType);
}

std::string c_definition(std::string_view name, const kel_ebcom_global_params &params)
{
    return fmt::format("kel_ebcom_global_params {} = {{.icPortMTU = {}, .etherType = 0x{:04x}}}", name,
                       params.icPortMTU, params.etherType);
}

std::string told(std::string_view, const kel_ebcom_path_config &path)
{
    return fmt::format("dst_mac={}, port={}, {}", to_text(mac_address_at(path.dst_mac)), port_text(path.iell_port),
                       shaping_told(path));
}

std::string c_definition(std::string_view name, const kel_ebcom_path_config &path)
{
    return fmt::format("kel_ebcom_path_config {} = {{.dst_mac = {}, .iell_port = {}{}}}", name,
                       initializer(path.dst_mac), path.iell_port, shaping_initializer(path));
}

std::string told(std::string_view, const kel_pcep_config &pcep)
{
    return fmt::format("remote_pcep_id={}, local_mac={}, remote_mac={}, vlan_id={}, priority={}", remote_id_of(pcep),
                       to_text(mac_address_at(pcep.local_mac)), to_text(mac_address_at(pcep.remote_mac)), pcep.vlan_id,
                       pcep.priority);
}

std::string c_definition(std::string_view name, const kel_pcep_config &pcep)
{
    return fmt::format("kel_pcep_config {} = {{.remote_pcep_id = {}, .local_mac = {}, .remote_mac = {}, .vlan_id = {}, "
                       ".priority = {}, .byte19 = {}, .word20 = {}}}",
                       name, initializer(pcep.remote_pcep_id), initializer(pcep.local_mac),
                       initializer(pcep.remote_mac), pcep.vlan_id, pcep.priority, pcep.byte19, pcep.word20);
}

std::string c_number(int64_t number)
{
    return number == std::numeric_limits<int64_t>::min() ? "INT64_MIN" : fmt::to_string(number);
}

std::string c_string(std::string_view text)
{
    std::string literal = "\"";
    for (const char c : text)
        literal += is_plain(c) ? std::string(1, c) : fmt::format("\\{:03o}", static_cast<unsigned char>(c));
    return literal + '"';
}

} // namespace kelctl
