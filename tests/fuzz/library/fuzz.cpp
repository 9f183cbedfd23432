// Octets as a script of operations and faults, on the model and on the library over the scripted platform: both must do
// the same at every step.
//
// The library's state lives as long as its process, so every input is taken back afterwards, and the model goes along.
// Each start leaves a thread behind for good; fuzz in processes that end now and then (-fork=1).
#include "choices.h"
#include "input.h"
#include "transcript.h"
#include "trial.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

// Which goes on from input to input.
proof::trial &the_trial()
{
    static proof::trial trial = [] {
        transcript::begin();
        return proof::trial();
    }();
    return trial;
}

proof::script script_in(Input input)
{
    std::vector<proof::choice> choices;
    while (!input.ended())
        choices.push_back(input.take<proof::choice>());
    return proof::written_out(choices);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    proof::trial &trial = the_trial();
    const proof::script script = script_in(Input(octets, count));
    std::string found = trial.difference(script);
    if (found.empty())
        found = trial.difference_on_way_back();
    if (found.empty())
        return 0;
    std::fprintf(stderr, "the script\n%sdiffers at %s\n", proof::text_of(script).c_str(), found.c_str());
    std::abort();
}
