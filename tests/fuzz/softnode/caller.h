/*
 * caller.h - one input of the fuzzer as a caller of the closed libraries: where its arguments come from, what it got.
 *
 * Handles are octets as they are, or those that the node has issued to this input, of the kind that is wanted or of
 * another, alive or not. What a caller has to guarantee is kept: buffers are as long as they are said to be, texts have
 * an end, and streams are streams.
 */
#ifndef TESTS_FUZZ_SOFTNODE_CALLER_H
#define TESTS_FUZZ_SOFTNODE_CALLER_H

#include "input.h"

#include "platform/kel_init.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/* What the closed libraries hand out, by what it is good for. */
enum Kind : std::uint8_t { system_handle, driver_kit, target, pcep, group, scheduler, queue, connection, event, kinds };

class Caller
{
public:
    /* Attached, so that calls get further than to the check of the driver-kit handle. */
    explicit Caller(const Input &octets) : input(octets)
    {
        keep_attachment();
    }

    std::uint8_t octet()
    {
        return input.take<std::uint8_t>();
    }

    bool seldom()
    {
        return input.below(16) == 15;
    }

    std::uint64_t handle(Kind wanted)
    {
        const std::size_t choice = octet();
        if (choice == 255)
            return input.take<std::uint64_t>();
        const auto &issued = choice >= 240 ? issued_[choice % kinds] : issued_[wanted];
        return issued.empty() ? 0 : issued[choice % issued.size()];
    }

    void *pointer(Kind wanted)
    {
        return reinterpret_cast<void *>(handle(wanted));
    }

    /* Null now and then. */
    template <class Value> Value *maybe(Value &value)
    {
        return seldom() ? nullptr : &value;
    }

    std::uint16_t device()
    {
        return seldom() ? input.take<std::uint16_t>() : std::uint16_t{7};
    }

    /* Of PCEPs and groups. */
    std::uint32_t id()
    {
        return seldom() ? input.take<std::uint32_t>() : octet() % 8U;
    }

    /* As the driver kit wants it, or altogether made of octets. */
    template <class Record> Record record(Record good)
    {
        return seldom() ? input.take<Record>() : good;
    }

    void keep(Kind kind, std::uint64_t handle)
    {
        issued_[kind].push_back(handle);
    }

    void keep(Kind kind, const void *handle)
    {
        keep(kind, reinterpret_cast<std::uintptr_t>(handle));
    }

    /* A fault rule may answer for the accelerator and leave the record as it was. */
    void keep_attachment()
    {
        kel_attach_info info{};
        if (kel_init_attach(&info) != 0)
            return;
        keep(system_handle, info.sys_handle);
        keep(driver_kit, info.ork_handle);
        keep(target, info.ehsfp_target);
    }

    Input input;
    bool swept = false;

private:
    std::array<std::vector<std::uint64_t>, kinds> issued_;
};

using Step = void (*)(Caller &caller);

std::span<const Step> driver_kit_steps();
std::span<const Step> companion_steps();
std::span<const Step> timing_unit_steps();
std::span<const Step> control_steps();

/*
 * A call whose arguments are taken from the input: from the first to the last, with every compiler. Those of an
 * ordinary call are not.
 */
template <class Result, class... Parameters>
Result in_order(Result (*function)(Parameters...), std::type_identity_t<std::tuple<Parameters...>> arguments)
{
    return std::apply(function, std::move(arguments));
}

inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

#endif
