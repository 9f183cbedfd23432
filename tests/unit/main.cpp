// The library's state lives as long as its process, so each test has a process of its own: ctest runs them that way.
#include "transcript.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    transcript::begin();
    const int failed = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 1)
        fprintf(stderr, "Several tests shared one process and its state: run them through ctest, or one by one.\n");
    return failed;
}
