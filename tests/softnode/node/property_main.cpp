/*
 * property_main.cpp - runs the property tests: with a fixed seed, so that a run can be repeated, unless RC_PARAMS says
 * otherwise.
 *
 *     RC_PARAMS="seed=$RANDOM max_success=2000" build/dev/bin/softnode-property-test
 */
#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char **argv)
{
    setenv("RC_PARAMS", "seed=1", 0);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
