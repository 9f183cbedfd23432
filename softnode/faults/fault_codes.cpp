/*
 * fault_codes.cpp - the table of fault_codes.h, by the beginnings of the functions' names.
 */
#include "softnode/faults/fault_codes.h"

#include "softnode/common/json_text.h"
#include "softnode/faults/closed_functions.h"
#include "softnode/platform.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace softnode
{

namespace
{

constexpr std::array<std::int64_t, 3> driver_kit{ORK_INVAL, ORK_AGAIN, ORK_OUTOFRANGE};
constexpr std::array<std::int64_t, 3> companion{KEL_RC_OUT_OF_RANGE, KEL_RC_LIMIT, KEL_RC_FAILED};
constexpr std::array<std::int64_t, 2> timing_unit{ORK_INVAL, ORK_SHUTDOWN};
constexpr std::array<std::int64_t, 1> formatting{KEL_RC_LIMIT};
constexpr std::array<std::int64_t, 1> restart{ORK_INVAL};

struct Library {
    std::string_view prefix;
    std::span<const std::int64_t> codes;
};

constexpr std::array<Library, 5> libraries{{
    {"ork_", driver_kit},
    {"kel_init_", companion},
    {"vorn_tu_", timing_unit},
    {"kel_fmt_", formatting},
    {"qol_ng_", restart},
}};

} // namespace

std::span<const std::int64_t> fault_codes(std::size_t function)
{
    return std::find_if(libraries.begin(), libraries.end(),
                        [&](const Library &one) { return closed_functions[function].starts_with(one.prefix); })
        ->codes;
}

std::string fault_function_list()
{
    Json list = Json::array();
    for (std::size_t function = 0; function < closed_functions.size(); ++function) {
        const auto codes = fault_codes(function);
        list.push_back({{"function", closed_functions[function]}, {"codes", std::vector(codes.begin(), codes.end())}});
    }
    return written(list);
}

} // namespace softnode
