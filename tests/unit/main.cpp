// The library's state lives as long as its process, so each test has a process of its own. ctest runs a program for each;
// children of one program are quicker, above all under valgrind:
//
//     unit-tests --forked [PATTERN...] [--gtest_fail_fast]         PATTERN: of names, as in 'Shaper*'
#include "transcript.h"

#include <gtest/gtest.h>

#include <fnmatch.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace
{

// The child leaves without the destructors of the tracer, whose threads are not there.
[[noreturn]] void run_alone(const std::string &name)
{
    GTEST_FLAG_SET(filter, name);
    const int failed = RUN_ALL_TESTS();
    fflush(nullptr);
    _exit(failed);
}

bool passes(const std::string &name)
{
    fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        run_alone(name);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        printf("failed in a process of its own: %s, status %#x\n", name.c_str(), static_cast<unsigned>(status));
        return false;
    }
    return true;
}

using pattern_list = std::span<char *const>;

bool fits_any(pattern_list patterns, const std::string &name)
{
    return std::ranges::any_of(patterns, [&](const char *each) { return fnmatch(each, name.c_str(), 0) == 0; });
}

std::vector<std::string> tests_named(pattern_list patterns)
{
    std::vector<std::string> names;
    const testing::UnitTest &all = *testing::UnitTest::GetInstance();
    for (int n = 0; n < all.total_test_suite_count(); ++n) {
        const testing::TestSuite &suite = *all.GetTestSuite(n);
        for (int m = 0; m < suite.total_test_count(); ++m)
            names.push_back(std::string(suite.name()) + "." + suite.GetTestInfo(m)->name());
    }
    if (!patterns.empty())
        std::erase_if(names, [&](const std::string &name) { return !fits_any(patterns, name); });
    return names;
}

int run_forked(pattern_list patterns)
{
    size_t ran = 0;
    size_t failed = 0;
    for (const std::string &name : tests_named(patterns)) {
        ++ran;
        failed += !passes(name);
        if (failed && GTEST_FLAG_GET(fail_fast))
            break;
    }
    printf("%zu tests, %zu of them failed, tracing %s\n", ran, failed, transcript::traced() ? "on" : "off");
    return failed || !ran;
}

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    transcript::begin();
    if (argc > 1 && std::string(argv[1]) == "--forked")
        return run_forked({argv + 2, argv + argc});
    const int failed = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 1)
        fprintf(stderr, "Several tests shared one process and its state: run them through ctest, or one by one.\n");
    return failed;
}
