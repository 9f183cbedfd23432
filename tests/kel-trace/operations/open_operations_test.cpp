// Operations in operations, whole and cut off.
#include "kel-trace/operations/open_operations.h"

#include <gtest/gtest.h>

#include <string>

namespace kel_trace
{
namespace
{

struct frame {
    std::string name;
};

TEST(OpenOperations, AreLeftInnermostFirst)
{
    open_operations<frame> open;
    cut_operations cut;
    std::string left;
    const auto note = [&](const frame &one) { left += one.name + " "; };
    open.enter({"outer"});
    open.enter({"inner"});
    EXPECT_TRUE(open.leave("inner", cut, note));
    EXPECT_TRUE(open.leave("outer", cut, note));
    EXPECT_EQ(left, "inner outer ");
    EXPECT_TRUE(open.empty());
    EXPECT_EQ(cut, cut_operations());
}

TEST(OpenOperations, ThatWereNotEnteredAreCutAtTheBeginning)
{
    open_operations<frame> open;
    cut_operations cut;
    open.enter({"one"});
    EXPECT_FALSE(open.leave("other", cut, [](const frame &) { FAIL(); }));
    EXPECT_EQ(cut.at_beginning, 1U);
    EXPECT_EQ(open.size(), 1U);
}

TEST(OpenOperations, AreCutWhenOneAroundThemIsLeft)
{
    open_operations<frame> open;
    cut_operations cut;
    for (const char *name : {"outer", "middle", "inner"})
        open.enter({name});
    EXPECT_TRUE(open.leave("outer", cut, [](const frame &) {}));
    EXPECT_EQ(cut.within, 2U);
    EXPECT_TRUE(open.empty());
}

TEST(OpenOperations, NameIsThatOfTheFunction)
{
    EXPECT_EQ(frame_name("kel_core_ic_pcep_stop()"), "kel_core_ic_pcep_stop");
}

} // namespace
} // namespace kel_trace
