// The layout of the program.
#include "kelctl/c_program.h"

#include "kelctl/c_text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdlib>

namespace kelctl
{
namespace
{

constexpr std::string_view beginning = R"(/*
 * Written by kelctl: what was done with the library, call by call. Ends with status 1 at the first call that does not
 * return what it returned then.
 *
 *     cc -std=c11 FILE $(pkg-config --cflags --libs kel-core-ic)
 */
#define _POSIX_C_SOURCE 200809L /* setenv() */

#include <kel/kel_core_ic_ebcom.h>
#include <kel/kel_core_ic_pcep.h>
#include <kel/kel_trace.h>

#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

static void expect(uint32_t expected, const char *function, uint32_t code)
{
    if (code == expected)
        return;
    fprintf(stderr, "%s() returned %lu, not %lu\n", function, (unsigned long)code, (unsigned long)expected);
    exit(EXIT_FAILURE);
}

)";

std::string call_statement(std::string_view function, const call_text &call, uint32_t code)
{
    const std::string_view name = call.instead.name.empty() ? function : call.instead.name;
    const std::string made = fmt::format("{}({})", name, fmt::join(call.arguments, ", "));
    if (call.result == returned::nothing)
        return made + ";";
    if (call.result == returned::text)
        return fmt::format("puts({});", made);
    return fmt::format("expect({}, \"{}\", {});", code, function, made);
}

// The library reads it from the environment, and the node's own addresses depend on it.
std::string mpid_statement()
{
    const char *mpid = std::getenv("MPID");
    return mpid ? fmt::format("    setenv(\"MPID\", {}, 1);\n", c_string(mpid)) : "";
}

} // namespace

void c_program::add(std::string_view function, const call_text &call, uint32_t code)
{
    if (helpers_.find(call.instead.definition) == std::string::npos)
        helpers_ += fmt::format("{}\n", call.instead.definition);
    const std::string statement = call_statement(function, call, code);
    if (call.declarations.empty() && call.afterwards.empty()) {
        statements_ += fmt::format("    {}\n", statement);
        return;
    }
    statements_ += "    {\n";
    for (const std::string &line : call.declarations)
        statements_ += fmt::format("        {}\n", line);
    statements_ += fmt::format("        {}\n", statement);
    for (const std::string &line : call.afterwards)
        statements_ += fmt::format("        {}\n", line);
    statements_ += "    }\n";
}

void c_program::remark(std::string_view text)
{
    statements_ += fmt::format("{}    /* {} */\n", statements_.empty() ? "" : "\n", text);
}

std::string c_program::text() const
{
    return fmt::format("{}{}int main(void)\n{{\n{}{}    return 0;\n}}\n", beginning, helpers_, mpid_statement(),
                       statements_);
}

} // namespace kelctl
