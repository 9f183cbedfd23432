// Any records of a few threads, as a recording may hold them whoever wrote it: made into operations, their causes and
// parameters, and checked against what the library promises.
#include "input.h"
#include "kel-trace/operations/causes.h"
#include "kel-trace/operations/operation_builder.h"
#include "kel-trace/operations/parameters.h"
#include "kel-trace/operations/promises.h"
#include "kel-trace/operations/statistics.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <string>

namespace
{

using namespace kel_trace;

void expect(bool true_fact)
{
    if (!true_fact)
        std::abort();
}

bool any(const thread_key & /*of*/, int64_t /*time*/)
{
    return true;
}

// What is made of records, and how much of them that can be.
struct analysis {
    uint64_t records = 0;
    uint64_t in_operations = 0;
    uint64_t failures = 0;
    causes why{any};
    promises whole{false, [](const finding &one) { expect(!one.what.empty()); }};
    promises part{true, [](const finding &one) { expect(!one.what.empty()); }};
    statistics numbers;
    operation_builder builder{[this](const operation &done) { take(done); }};

    void take(const record &one)
    {
        ++records;
        builder.take(one);
        numbers.take(one);
        whole.take(one);
        part.take(one);
    }

    void end()
    {
        builder.end();
        numbers.end();
        whole.end();
        part.end();
    }

    void take(const operation &done)
    {
        in_operations += done.kept_count + done.records_left_out;
        failures += done.failure() != nullptr;
        for (const complaint &one : done.complaints)
            expect(!one.reporters.empty() && one.times > 0);
        for (const parameter &one : parameters_of(done))
            expect(!one.name.empty());
        for (const std::string &object : objects_of(done))
            expect(!object.empty());
        why.take(done);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    Input input(octets, count);
    analysis made;
    for (int64_t time = 0; !input.ended(); ++time) {
        const auto kind = static_cast<event>(input.below(event_count));
        const auto thread = static_cast<int64_t>(input.below(3));
        const std::string location = input.text();
        const std::string domain = input.text();
        const std::string message = input.text();
        made.take({time,
                   {0, 1, thread},
                   kind,
                   kind == event::other ? "ic:OTHER" : event_names[static_cast<size_t>(kind)],
                   location,
                   domain,
                   message});
    }
    made.end();

    expect(made.whole.records() == made.records && made.part.records() == made.records);
    expect(made.part.findings() <= made.whole.findings());
    expect(made.in_operations <= made.records);
    for (const auto &[host, numbers] : made.numbers.hosts())
        expect(std::reduce(numbers.events.begin(), numbers.events.end()) == made.records);
    uint64_t counted = 0;
    for (const cause *one : made.why.failures())
        counted += one->count;
    expect(counted <= made.failures);
    return 0;
}
