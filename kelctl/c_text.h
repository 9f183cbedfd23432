// What is passed into the library, written down: for a failure report, and as C.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kelctl/mac_address.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelctl
{

// ---- For a report: "dst_mac=02:00:00:02:00:01" ----

std::string told(std::string_view name, const mac_address &mac);
std::string told(std::string_view name, const std::array<uint8_t, 2> &numbers);
std::string told(std::string_view name, const kel_ebcom_global_params &params); // by its members, as are the others
std::string told(std::string_view name, const kel_ebcom_path_config &path);
std::string told(std::string_view name, const kel_pcep_config &pcep);

// ---- As C: "uint8_t dst_mac[6] = {0x02, 0x00, 0x00, 0x02, 0x00, 0x01}" ----

std::string c_definition(std::string_view name, const mac_address &mac);
std::string c_definition(std::string_view name, const std::array<uint8_t, 2> &numbers);
std::string c_definition(std::string_view name, const kel_ebcom_global_params &params);
std::string c_definition(std::string_view name, const kel_ebcom_path_config &path);
std::string c_definition(std::string_view name, const kel_pcep_config &pcep);

std::string c_number(int64_t number);

// A string literal. Whatever is no printable ASCII character is written as its octets.
std::string c_string(std::string_view text);

// ---- Types, as they stand before a name ----

template <typename Type> inline constexpr bool is_c_array = false;
template <> inline constexpr bool is_c_array<mac_address> = true;
template <> inline constexpr bool is_c_array<std::array<uint8_t, 2>> = true;

template <typename Type> inline constexpr std::string_view c_type = {};
template <> inline constexpr std::string_view c_type<uint8_t> = "uint8_t ";
template <> inline constexpr std::string_view c_type<uint16_t> = "uint16_t ";
template <> inline constexpr std::string_view c_type<uint32_t> = "uint32_t ";
template <> inline constexpr std::string_view c_type<uint64_t> = "uint64_t ";
template <> inline constexpr std::string_view c_type<int64_t> = "int64_t ";
template <> inline constexpr std::string_view c_type<void *> = "void *";
template <> inline constexpr std::string_view c_type<kel_attach_info> = "kel_attach_info ";
template <> inline constexpr std::string_view c_type<kel_ebcom_capabilities> = "kel_ebcom_capabilities ";
template <> inline constexpr std::string_view c_type<ork_ebcom_pcep_path> = "ork_ebcom_pcep_path ";
template <> inline constexpr std::string_view c_type<ebcom_global_stats> = "ebcom_global_stats ";
template <> inline constexpr std::string_view c_type<ebcom_queue_stats> = "ebcom_queue_stats ";
template <> inline constexpr std::string_view c_type<ebcom_pcep_stats> = "ebcom_pcep_stats ";
template <> inline constexpr std::string_view c_type<pcep_stats> = "pcep_stats ";

} // namespace kelctl
