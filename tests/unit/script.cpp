#include "script.h"

#include "scripted_platform.h"
#include "transcript.h"

#include <cstdarg>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace scripted
{
namespace
{

struct rule {
    uint32_t first; // call number, counted from 1
    uint32_t times;
    int64_t result;
};

// The calls of the test's own thread, or those of all others.
struct side {
    std::map<std::string, uint32_t> calls;
    std::multimap<std::string, rule> rules;
};

// Never destroyed: timestamp threads outlive the tests.
struct script {
    std::mutex mutex;
    side main;
    side threads;
    std::map<std::string, std::vector<octets>> records;
    std::map<std::string, std::function<void()>> actions; // of the test's own thread
};

script &the_script()
{
    static auto *instance = new script;
    return *instance;
}

void add_rule(side &side, const std::string &function, int64_t result, uint32_t call, uint32_t times)
{
    const std::lock_guard lock(the_script().mutex);
    side.rules.insert({function, {side.calls[function] + call, times, result}});
}

// An action that calls the function itself does not meet itself again.
void take_action(const char *function)
{
    const auto found = the_script().actions.find(function);
    if (found == the_script().actions.end())
        return;
    const std::function<void()> action = std::exchange(found->second, {});
    if (action)
        action();
    the_script().actions[function] = action;
}

} // namespace

void fail(const std::string &function, int64_t result, uint32_t call, uint32_t times)
{
    add_rule(the_script().main, function, result, call, times);
}

void fail_on_thread(const std::string &function, int64_t result, uint32_t call, uint32_t times)
{
    add_rule(the_script().threads, function, result, call, times);
}

void renew()
{
    const std::lock_guard lock(the_script().mutex);
    the_script().main = {};
    the_script().threads = {};
    the_script().records.clear();
}

void on_call(const std::string &function, std::function<void()> action)
{
    the_script().actions[function] = std::move(action);
}

std::optional<int64_t> next_result(const char *function)
{
    if (transcript::is_main_thread())
        take_action(function);
    const std::lock_guard lock(the_script().mutex);
    side &side = transcript::is_main_thread() ? the_script().main : the_script().threads;
    const uint32_t call = ++side.calls[function];
    const auto [begin, end] = side.rules.equal_range(function);
    for (auto found = begin; found != end; ++found)
        if (const rule &each = found->second; call >= each.first && call - each.first < each.times)
            return each.result;
    return std::nullopt;
}

int64_t logged_result(const char *function, const std::string &arguments)
{
    const std::optional<int64_t> result = next_result(function);
    transcript::add(text("> %s(%s)", function, arguments.c_str()) + (result ? text(" = %ld", *result) : ""));
    return result.value_or(0);
}

uint32_t calls_of(const std::string &function)
{
    const std::lock_guard lock(the_script().mutex);
    return the_script().main.calls[function] + the_script().threads.calls[function];
}

void keep_record(const char *function, const void *record, size_t size)
{
    const auto *begin = static_cast<const uint8_t *>(record);
    const std::lock_guard lock(the_script().mutex);
    the_script().records[function].emplace_back(begin, begin + size);
}

std::vector<octets> records_of(const std::string &function)
{
    const std::lock_guard lock(the_script().mutex);
    return the_script().records[function];
}

octets record_of(const std::string &function)
{
    const std::lock_guard lock(the_script().mutex);
    const auto &records = the_script().records[function];
    return records.empty() ? octets{} : records.back();
}

std::string ork_text(const void *handle)
{
    return handle == ork_handle ? "ork" : text("%p", handle);
}

std::string text(const char *format, ...)
{
    char buffer[512];
    va_list values;
    va_start(values, format);
    vsnprintf(buffer, sizeof buffer, format, values);
    va_end(values);
    return buffer;
}

} // namespace scripted
