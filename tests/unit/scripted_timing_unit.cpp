// The timing-unit client of the scripted platform: events that the test posts, handed to the threads that wait.
#include "platform/vorn_tu.h"
#include "script.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <variant>

using scripted::logged_result;
using scripted::text;

namespace
{

using wake_up = std::variant<vorn_tu_event, int32_t>; // an event, or a result without one

// Never destroyed: timestamp threads outlive the tests.
struct timing_unit {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<wake_up> wake_ups;
    uint32_t waiting = 0;
    std::deque<vorn_tu_event> handed_out; // for good: ignored events are never handed back
    vorn_tu_nputimeoffset reading = {10, 250000};
};

timing_unit &unit()
{
    static auto *instance = new timing_unit;
    return *instance;
}

void *const unit_handle = reinterpret_cast<void *>(0x7777);

void post(wake_up next)
{
    const std::lock_guard lock(unit().mutex);
    unit().wake_ups.push_back(next);
    unit().changed.notify_all();
}

wake_up wait_for_wake_up()
{
    std::unique_lock lock(unit().mutex);
    ++unit().waiting;
    unit().changed.notify_all();
    unit().changed.wait(lock, [] { return !unit().wake_ups.empty(); });
    --unit().waiting;
    const wake_up next = unit().wake_ups.front();
    unit().wake_ups.pop_front();
    return next;
}

vorn_tu_event *hand_out(const vorn_tu_event &event)
{
    const std::lock_guard lock(unit().mutex);
    return &unit().handed_out.emplace_back(event);
}

std::string handle_text(const void *handle)
{
    return handle == unit_handle ? "unit" : text("%p", handle);
}

} // namespace

namespace scripted
{

void set_reading(const vorn_tu_nputimeoffset &reading)
{
    const std::lock_guard lock(unit().mutex);
    unit().reading = reading;
}

void post_event(uint32_t type, int32_t domain)
{
    post(vorn_tu_event{type, 0, domain});
}

void fail_wait(int32_t result)
{
    post(result);
}

void wait_for_waiting_threads(uint32_t threads)
{
    std::unique_lock lock(unit().mutex);
    const auto settled = [threads] { return unit().waiting == threads && unit().wake_ups.empty(); };
    EXPECT_TRUE(unit().changed.wait_for(lock, std::chrono::seconds(60), settled))
        << unit().waiting << " of " << threads << " threads wait";
}

} // namespace scripted

extern "C" int32_t vorn_tu_init(void **handle)
{
    const auto rc = static_cast<int32_t>(logged_result(__func__, text("%p", *handle)));
    if (!rc)
        *handle = unit_handle;
    return rc;
}

extern "C" int32_t vorn_tu_subscribe_adjnpuoffs(void *handle, int32_t domain)
{
    return static_cast<int32_t>(logged_result(__func__, text("%s, %d", handle_text(handle).c_str(), domain)));
}

extern "C" int32_t vorn_tu_wait_event(void *handle, vorn_tu_event **event)
{
    const wake_up next = wait_for_wake_up();
    // The pointer is null before each wait.
    const std::string call = text("> %s(%s%s)", __func__, handle_text(handle).c_str(), *event ? ", an event" : "");
    if (const int32_t *rc = std::get_if<int32_t>(&next)) {
        transcript::add(call + text(" = %d", *rc));
        return *rc;
    }
    *event = hand_out(std::get<vorn_tu_event>(next));
    transcript::add(call);
    return 0;
}

extern "C" int32_t vorn_tu_free_event(void *handle, vorn_tu_event **event)
{
    const vorn_tu_event freed = **event;
    *event = nullptr;
    return static_cast<int32_t>(
        logged_result(__func__, text("%s, type %u, domain %d", handle_text(handle).c_str(), freed.type, freed.domain)));
}

extern "C" int32_t vorn_tu_get_nputimeoffset(void *handle, uint32_t zero, vorn_tu_nputimeoffset *reading)
{
    const auto rc = static_cast<int32_t>(logged_result(__func__, text("%s, %u", handle_text(handle).c_str(), zero)));
    const std::lock_guard lock(unit().mutex);
    if (!rc)
        *reading = unit().reading;
    return rc;
}
