// What is passed into the library, as a failure report tells it: "dst_mac=02:00:00:02:00:01".
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "kelctl/values/mac_address.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelctl
{

std::string told(std::string_view name, const mac_address &mac);
std::string told(std::string_view name, const std::array<uint8_t, 2> &numbers);
std::string told(std::string_view name, const kel_ebcom_global_params &params); // by its members, as are the others
std::string told(std::string_view name, const kel_ebcom_path_config &path);
std::string told(std::string_view name, const kel_pcep_config &pcep);

} // namespace kelctl
