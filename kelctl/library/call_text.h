// Arguments of a call as a failure report shows them: "dst_mac=02:00:00:02:00:01". One function for each type that a
// call takes; a record is shown by its members, whatever its name.
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

std::string argument_text(std::string_view name, int64_t number);
std::string argument_text(std::string_view name, const mac_address &mac);
std::string argument_text(std::string_view name, const std::array<uint8_t, 2> &numbers);
std::string argument_text(std::string_view name,
                          const kel_ebcom_global_params &params); // this and the others by their members
std::string argument_text(std::string_view name, const kel_ebcom_path_config &path);
std::string argument_text(std::string_view name, const kel_pcep_config &pcep);

} // namespace kelctl
