// The table of what may be left: of functions that there are, and not more than it says.
#include "kelctl/sweep/documented_leftovers.h"

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/commands/commands.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace kelctl
{
namespace
{

TEST(DocumentedLeftovers, AreOfCommandsAndOfFunctionsThatCanFail)
{
    std::set<std::string_view> operations;
    for (const command &row : commands().rows())
        for (const variant &one : row.variants)
            operations.insert(one.function);
    std::set<std::string> closed;
    for (const notation::document &row : accelerator_fault_functions())
        closed.insert(row.at("function").text());
    for (const documented_leftover &one : documented_leftovers()) {
        EXPECT_TRUE(operations.contains(one.operation)) << one.operation;
        EXPECT_TRUE(closed.contains(std::string(one.refused))) << one.refused;
        EXPECT_NE(one.why.find(one.operation), std::string_view::npos) << one.operation;
    }
}

TEST(DocumentedLeftovers, NeedOperationRefusalAndKind)
{
    constexpr std::array<std::string_view, 2> adding = {"kel_core_ic_pcep_start", "kel_core_ic_pcep_add"};
    EXPECT_TRUE(why_left(adding, "ork_bind", "pcep"));
    EXPECT_FALSE(why_left(adding, "ork_bind", "binding"));
    EXPECT_FALSE(why_left(adding, "ork_unbind", "pcep"));
    EXPECT_FALSE(why_left({}, "ork_bind", "pcep"));
}

} // namespace
} // namespace kelctl
