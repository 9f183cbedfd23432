/*
 * fault_codes_test.cpp - every closed function has codes to fail with.
 */
#include "softnode/faults/fault_codes.h"

#include "softnode/common/json_text.h"
#include "softnode/faults/closed_functions.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

using namespace softnode;

namespace
{

std::vector<std::int64_t> codes_of(std::string_view name)
{
    const auto codes = fault_codes(*closed_function(name));
    return {codes.begin(), codes.end()};
}

} // namespace

TEST(FaultCodes, AreThereForEveryFunctionAndNoneIsSuccess)
{
    for (std::size_t function = 0; function < closed_functions.size(); ++function) {
        EXPECT_FALSE(fault_codes(function).empty()) << closed_functions[function];
        for (const std::int64_t code : fault_codes(function))
            EXPECT_NE(code, 0) << closed_functions[function];
    }
}

TEST(FaultCodes, AreThoseOfTheFunctionsLibrary)
{
    EXPECT_EQ(codes_of("ork_bind"), (std::vector<std::int64_t>{-1, -4, -9}));
    EXPECT_EQ(codes_of("kel_init_attach"), (std::vector<std::int64_t>{3, 10, 13}));
    EXPECT_EQ(codes_of("vorn_tu_wait_event"), (std::vector<std::int64_t>{-1, -5}));
    EXPECT_EQ(codes_of("kel_fmt_end"), (std::vector<std::int64_t>{10}));
    EXPECT_EQ(codes_of("qol_ng_restart_request_line_and_file"), (std::vector<std::int64_t>{-1}));
}

TEST(FaultCodes, AreListedWithTheirFunctions)
{
    const Json list = notation::read_json(fault_function_list());
    ASSERT_EQ(list.size(), closed_functions.size());
    for (std::size_t function = 0; function < closed_functions.size(); ++function) {
        EXPECT_EQ(list[function].at("function"), closed_functions[function]);
        EXPECT_EQ(list[function].at("codes"), codes_of(closed_functions[function]));
    }
}
