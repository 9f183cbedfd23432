// Named values as text.
#include "kelctl/session/fields_view.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

std::string plain(const fields &shown)
{
    return fields_text(shown, painter(false));
}

TEST(FieldsView, NothingIsNoText)
{
    EXPECT_EQ(plain(fields::object()), "");
}

TEST(FieldsView, NamesLoseTheirUnderscoresAndValuesStandBelowEachOther)
{
    EXPECT_EQ(plain({{"queue_handle", "0x5d"}, {"vsi", 258}, {"bound", true}, {"rate", nullptr}}),
              "queue handle  0x5d\n"
              "vsi           258\n"
              "bound         yes\n"
              "rate          -\n");
}

TEST(FieldsView, ListsAreTakenIntoALine)
{
    EXPECT_EQ(plain({{"members", fields::array({1, 2})}, {"none", fields::array()}}), "members  1, 2\nnone     none\n");
}

TEST(FieldsView, RowsAreATableWithNumbersAtTheRight)
{
    const fields rows = fields::array({{{"name", "RLU1P"}, {"queue", 0}}, {{"name", "MZ"}, {"queue", nullptr}}});
    EXPECT_EQ(plain({{"count", 2}, {"ports", rows}}), "count  2\n"
                                                      "\n"
                                                      "name   queue\n"
                                                      "RLU1P      0\n"
                                                      "MZ         -\n");
}

TEST(FieldsView, LinesEndWithoutBlanks)
{
    const fields rows = fields::array({{{"a", 1}, {"b", "longer"}}, {{"a", 2}, {"b", "x"}}});
    EXPECT_EQ(plain({{"rows", rows}}), "a  b\n1  longer\n2  x\n");
}

TEST(FieldsView, NamedValuesUnderANameFollowIt)
{
    EXPECT_EQ(plain({{"outer", {{"inner", 1}}}}), "outer\ninner  1\n");
}

TEST(FieldsView, NamesArePainted)
{
    EXPECT_EQ(fields_text({{"vsi", 1}}, painter(true)), "\x1b[1mvsi\x1b[0m  1\n");
}

} // namespace
} // namespace kelctl
