/*
 * closed_functions_test.cpp - the table of closed functions that return a code.
 */
#include "softnode/faults/closed_functions.h"

#include <gtest/gtest.h>

using namespace softnode;

TEST(ClosedFunctions, EveryNameIsFoundAtItsPlace)
{
    for (std::size_t place = 0; place < closed_functions.size(); ++place)
        EXPECT_EQ(closed_function(closed_functions[place]), place);
}

TEST(ClosedFunctions, OtherNamesAreNotFound)
{
    for (const char *name : {"", "a", "zzz", "kel_init_attac", "kel_init_attach2", "softnode_reset"})
        EXPECT_FALSE(closed_function(name)) << name;
}
