// Messages about numbers with units.
#include "kelctl/values/quantity_messages.h"

#include <gtest/gtest.h>

namespace kelctl
{
namespace
{

TEST(Quantity, UnitNamesAreListedForPeople)
{
    EXPECT_EQ(names_of(rate_units), "kbit/s, Mbit/s or Gbit/s");
}

TEST(Quantity, WrongOnesAreToldWithTheUnits)
{
    EXPECT_EQ(no_quantity("1 MB", size_units),
              "\"1 MB\" is not a whole number with one of the units octets, KiB or MiB");
    EXPECT_EQ(no_multiple(1000, 256), "1000 octets are not a multiple of 256 octets");
}

} // namespace
} // namespace kelctl
