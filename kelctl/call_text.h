// A call into the library, written down: for a failure report, and as C.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// What a C program does with a call's result.
enum class returned { code, nothing, text };

// A function that a C program has to define, to call the library's through it.
struct c_helper {
    std::string_view name = {};
    std::string_view definition = {};
};

struct call_text {
    std::vector<std::string> told = {};         // for a failure report: "pcep_id=7"
    std::vector<std::string> declarations = {}; // C, in front of the call
    std::vector<std::string> arguments = {};    // C
    std::vector<std::string> afterwards = {};   // C, behind the call: showing what it read
    returned result = returned::code;
    c_helper instead = {};
};

} // namespace kelctl
