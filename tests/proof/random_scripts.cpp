// Random scripts with random faults, on the model and on the library. A script on which they differ is made as short as
// it will go and shown as one that a person can read.
//
//     RC_PARAMS="seed=7 max_success=100000" random-scripts
#include "choices.h"
#include "transcript.h"
#include "trial.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdio>
#include <cstdlib>

namespace proof
{
namespace
{

// 0 to 220 steps. What the octets mean does not depend on how far the run is.
rc::Gen<std::vector<choice>> scripts()
{
    return rc::gen::resize(
        220, rc::gen::container<std::vector<choice>>(rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<choice>())));
}

size_t steps;
size_t faults;

void count(const script &lines)
{
    steps += lines.size();
    for (const step &each : lines)
        faults += each.faults.size() + each.thread_faults.size();
}

} // namespace

TEST(RandomScripts, RunAlikeOnTheModelAndOnTheLibrary)
{
    EXPECT_TRUE(rc::check("model and library agree", [] {
        const script lines = written_out(*scripts().as("octets"));
        count(lines);
        const std::string found = found_in_own_process([&] { return trial().difference(lines); });
        if (!found.empty())
            RC_FAIL("the script\n" + text_of(lines) + "differs at " + found);
    }));
}

} // namespace proof

int main(int argc, char **argv)
{
    setenv("RC_PARAMS", "seed=1 max_success=1000", 0);
    testing::InitGoogleTest(&argc, argv);
    transcript::begin();
    const int failed = RUN_ALL_TESTS();
    printf("random scripts: %zu steps with %zu faults, tracing %s\n", proof::steps, proof::faults,
           transcript::traced() ? "on" : "off");
    return failed;
}
