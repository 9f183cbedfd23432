/*
 * control.cpp - calls of the control interface.
 */
#include "caller.h"

#include "notation/json.h"
#include "softnode/softnode.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

using Text = std::unique_ptr<char, void (*)(void *)>;

/* Rules that block would do so for ever. */
void forget_if_blocking(std::string_view rules)
{
    if (rules.find("block") != std::string_view::npos)
        softnode_faults_clear();
}

void add_faults(Caller &caller)
{
    const std::string rules = caller.input.text();
    const Text problem(softnode_faults_add(rules.c_str()), std::free);
    require(!problem || *problem != '\0');
    forget_if_blocking(rules);
}

void add_fault_file(Caller &caller)
{
    const std::string rules = caller.input.text();
    const int file = memfd_create("rules", MFD_CLOEXEC);
    require(write(file, rules.data(), rules.size()) == static_cast<ssize_t>(rules.size()));
    const std::string name = "/proc/self/fd/" + std::to_string(file);
    const Text problem(softnode_faults_add_file(name.c_str()), std::free);
    require(!problem || std::string_view(problem.get()).starts_with(name + ":"));
    close(file);
    forget_if_blocking(rules);
}

void list_faults(Caller &)
{
    const Text rules(softnode_faults_json(), std::free);
    require(notation::try_read_json(rules.get()).has_value());
}

void clear_faults(Caller &)
{
    softnode_faults_clear();
}

void release(Caller &)
{
    require(softnode_faults_release() == 0);
}

void list_functions(Caller &)
{
    const Text functions(softnode_fault_functions_json(), std::free);
    require(notation::try_read_json(functions.get()).has_value());
}

/* So few that a step stays fast: each frame that leaves takes its time. */
std::uint64_t frames(Caller &caller)
{
    return caller.octet();
}

std::uint32_t length(Caller &caller)
{
    return caller.seldom() ? caller.input.take<std::uint32_t>() : caller.input.take<std::uint16_t>();
}

void offer(Caller &caller)
{
    const auto mac = caller.record(std::array<std::uint8_t, 6>{2, 0, 0, 2, 0, caller.octet()});
    const std::uint64_t count = frames(caller);
    softnode_traffic_offer(caller.maybe(mac) ? mac.data() : nullptr, count, length(caller));
}

void offer_one(Caller &caller)
{
    const auto mac = caller.record(std::array<std::uint8_t, 6>{2, 0, 0, 2, 0, caller.octet()});
    const std::uint64_t identity = caller.octet();
    softnode_traffic_offer_one(caller.maybe(mac) ? mac.data() : nullptr, length(caller), identity);
}

void watch(Caller &caller)
{
    const auto check = [](void *, const softnode_frame *frame) {
        require(frame->identity != 0 && frame->entered <= frame->left);
    };
    softnode_traffic_watch(caller.seldom() ? nullptr : +check, nullptr);
}

void send(Caller &caller)
{
    const std::uint32_t id = caller.id();
    const std::uint64_t count = frames(caller);
    softnode_traffic_send(id, count, length(caller));
}

void advance(Caller &caller)
{
    const std::uint64_t before = softnode_time();
    softnode_time_advance(caller.seldom() ? caller.input.take<std::uint64_t>() : caller.input.take<std::uint32_t>());
    require(softnode_time() >= before);
}

/* Seldom, as it takes seven processes: an input has to ask for it, and once is enough. */
constexpr std::uint64_t sweep_word = 0x2e7065657773202e; /* ". sweep." */

void sweep(Caller &caller)
{
    if (caller.input.take<std::uint64_t>() != sweep_word || caller.swept)
        return;
    caller.swept = true;
    const auto run = [](void *) {
        kel_attach_info info{};
        return kel_init_attach(&info);
    };
    const softnode_scenario scenario{run, nullptr, nullptr, nullptr, 0};
    const Text report(softnode_fault_sweep(caller.maybe(scenario)), std::free);
    require(!report || notation::try_read_json(report.get()).has_value());
}

void set_reading(Caller &caller)
{
    in_order(softnode_timing_reading_set, {caller.input.take<std::int64_t>(), caller.input.take<std::uint32_t>()});
}

void post_event(Caller &caller)
{
    in_order(softnode_timing_event_post, {caller.input.take<std::uint32_t>(), caller.input.take<std::int32_t>()});
}

void settle(Caller &)
{
    softnode_timing_settle(0);
}

void look_in(Caller &)
{
    const Text document(softnode_snapshot_json(), std::free);
    require(notation::try_read_json(document.get()).has_value());
}

void draw(Caller &)
{
    const Text picture(softnode_graph_dot(), std::free);
    require(std::string_view(picture.get()).starts_with("digraph"));
}

void reset(Caller &)
{
    softnode_reset();
}

constexpr std::array<Step, 18> steps{{add_faults, add_fault_file, list_faults, clear_faults, release, sweep,
                                      set_reading, post_event, settle, look_in, draw, reset, list_functions, offer,
                                      send, advance, offer_one, watch}};

} // namespace

std::span<const Step> control_steps()
{
    return steps;
}
