#include "choices.h"

#include "faults.h"
#include "model.h"
#include "requests.h"

namespace proof
{
namespace
{

constexpr mac_bytes macs[] = {on_ob, also_on_ob, on_eioa, on_hsfp, on_cpu, on_mp_7, on_mp_0};
constexpr int32_t ports[] = {6, 6, 6, 7, 12, 42, 0, 14, -1};
constexpr uint32_t ids[] = {7, 9, 11, 1, 511, 200, 0, 512};
constexpr uint32_t rates[] = {0, 0, 0, 1000};
constexpr uint32_t locations[] = {0, 1, 2, 3, 4, 5, 6, UINT32_MAX};
constexpr const char *mpids[] = {"0", "7", "263", "256", "x", "-1"};

// The more often an operation stands here, the more often it is chosen.
constexpr operation frequent[] = {
    operation::path_add,   operation::path_add,   operation::path_rem,      operation::path_rem,
    operation::add_shaper, operation::add_shaper, operation::remove_shaper, operation::ebcom_start,
    operation::pcep_start, operation::pcep_add,   operation::pcep_add,      operation::pcep_rem,
    operation::group_add,  operation::group_add,  operation::group_rem,     operation::member_add,
    operation::member_add, operation::member_rem, operation::timing_event,
};

template <typename Value, size_t count> Value one_of(const Value (&values)[count], uint8_t octet)
{
    return values[octet % count];
}

operation operation_of(uint8_t octet)
{
    constexpr size_t all = operation_count + std::size(frequent);
    const size_t place = octet % all;
    return place < std::size(frequent) ? frequent[place] : static_cast<operation>(place - std::size(frequent));
}

// All arguments from two octets: an operation takes those it has.
step with_arguments(operation what, uint8_t first, uint8_t second)
{
    const uint32_t rate = one_of(rates, static_cast<uint8_t>(second / 16));
    step result = path(what, one_of(macs, first), one_of(ports, second), rate, rate / 16, second);
    result.id = one_of(ids, first);
    result.other_id = one_of(ids, second);
    result.pcep = pcep(result.id, one_of(macs, second), one_of(macs, static_cast<uint8_t>(second / 8))).pcep;
    result.format = static_cast<uint32_t>(second << 4);
    result.length = 1U + second * 2U;
    result.reading = {static_cast<int64_t>(first) << second % 63, second * 9999U};
    result.event = {second % 4U ? 6U : 5U, 0, first % 4 == 3};
    result.queue = {rate, rate / 16, rate ? 4U : 3U};
    result.mpid = first % 2 ? std::optional<std::string>(one_of(mpids, second)) : std::nullopt;
    result.location = first % 2 ? std::optional(one_of(locations, second)) : std::nullopt;
    if (what == operation::timing_failure)
        result.event.type = static_cast<uint32_t>(-(second % 13));
    return result;
}

// The calls of the step that can fail, each with its codes. One without codes is not among them.
std::vector<fault> possible(const std::vector<made_call> &calls)
{
    std::vector<fault> result;
    for (const made_call &call : calls)
        for (const int64_t code : codes_of(call.function))
            result.push_back({call.function, call.call, code, 1});
    return result;
}

// Half of all octets mean no fault; of the others, two octets choose.
void plant(std::vector<fault> &faults, const std::vector<made_call> &calls, uint8_t high, uint8_t low)
{
    if (high < 128)
        return;
    const std::vector<fault> all = possible(calls);
    if (!all.empty())
        faults.push_back(all[static_cast<size_t>((high - 128) * 256 + low) % all.size()]);
}

} // namespace

script written_out(std::span<const choice> choices)
{
    script result;
    model model(false);
    for (const choice &each : choices) {
        step step = with_arguments(operation_of(each[0]), each[1], each[2]);
        if (!model.allows(step))
            continue;
        for (const size_t fault : {3U, 5U}) {
            if (each[fault] < 128)
                continue;
            proof::model tried = model;
            tried.perform(step);
            const bool on_thread = each[fault + 1] % 4 == 3 && !tried.thread_calls().empty();
            plant(on_thread ? step.thread_faults : step.faults, on_thread ? tried.thread_calls() : tried.calls(),
                  each[fault], each[fault + 1]);
        }
        model.perform(step);
        result.push_back(step);
    }
    return result;
}

} // namespace proof
