// The parameters that an operation's records carry, and the objects that they name.
//
//     ork_ebcom_pcep_create(localPcepId=7, remotePcepId=9)      localPcepId=7, remotePcepId=9; the object is "PCEP 7"
#pragma once

#include "kel-trace/operations/operation.h"

#include <string>
#include <string_view>
#include <vector>

namespace kel_trace
{

// What an announced call is of: "ork_bind" of "ork_bind(ID2M): PCEP_ID=7 -> EHSFP".
std::string_view called_function(std::string_view detail);

struct parameter {
    std::string name;
    std::string value;

    bool operator==(const parameter &) const = default;
};

// Those that the operation's records carry, in their order.
std::vector<parameter> parameters_of(const operation &operation);

// What the operation is about: "path 02:00:00:02:00:01", "PCEP 7", "group 300"; empty if the records do not show it.
std::vector<std::string> objects_of(const operation &operation);

} // namespace kel_trace
