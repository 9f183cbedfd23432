// Words for given take-downs.
#include "kelctl/take_down_report.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

constexpr product path = {"path", "paths", "removed"};
constexpr product service = {.one = "EBCOM service", .undone = "stopped"};

const trace_entry complaint = {"EXCEPTION", "GENERAL", "stop(): refused", "a.cpp:1"};

TEST(TakeDownReport, ProductsOfAKindAreCountedWhereTheFirstOneStands)
{
    EXPECT_EQ(undone_text({{"a()", path, {}}, {"b()", service, {}}, {"c()", path, {}}}),
              "undone: 2 paths removed, EBCOM service stopped\n");
    EXPECT_EQ(products_text("kept: ", {service, path}), "kept: EBCOM service, 1 path\n");
}

TEST(TakeDownReport, LargeNumbersAreReadable)
{
    EXPECT_EQ(undone_text(std::vector<undone_step>(10'000, {"a()", path, {}})), "undone: 10,000 paths removed\n");
    EXPECT_EQ(products_text("", std::vector<product>(999, path)), "999 paths\n");
}

TEST(TakeDownReport, NothingIsSaidAsSuch)
{
    EXPECT_EQ(undone_text({}), "undone: nothing\n");
    EXPECT_EQ(products_text("kept: ", {}), "kept: nothing\n");
    EXPECT_EQ(complaints_text({}), "");
    EXPECT_EQ(undone_fields({}), fields::array());
}

TEST(TakeDownReport, OperationsAreListedInTheirOrder)
{
    EXPECT_EQ(undone_fields({{"b()", path, {}}, {"a()", path, {}}}).dump(), R"_(["b()","a()"])_");
}

TEST(TakeDownReport, ComplaintsStandUnderTheirOperation)
{
    const std::vector<undone_step> undone = {{"a()", path, {}}, {"stop()", service, {complaint}}};
    EXPECT_EQ(complaints_text(undone), "stop() succeeded, but its trace records tell of failures:\n"
                                       "    EXCEPTION GENERAL stop(): refused  (a.cpp:1)\n");
    EXPECT_EQ(complaints_fields(undone).dump(),
              R"_([{"operation":"stop()","records":[{"event":"EXCEPTION","domain":"GENERAL",)_"
              R"_("message":"stop(): refused","location":"a.cpp:1"}]}])_");
}

} // namespace
} // namespace kelctl
