// Which calls are the program's, and the lines of each. All of it runs within the program's own calls: nothing is
// allocated, and errno is as the program would find it.
#include "kel-record/preload/call.h"

#include "kel-record/preload/call_file.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>

namespace kel_record
{
namespace
{

// The thread's call that is under way.
thread_local call *under_way;

// The octets of an object in memory.
struct extent {
    const void *begin;
    const void *end;

    bool holds(const void *address) const
    {
        return address >= begin && address < end;
    }
};

extent object_of(const void *address)
{
    dl_find_object found = {};
    if (_dl_find_object(const_cast<void *>(address), &found) != 0)
        return {};
    return {found.dlfo_map_start, found.dlfo_map_end};
}

extent library;
extent ours;

// kel_tracepoint is a function like any other of the library: a wrapper of it is here, and the next one of that name is
// the library's own.
[[gnu::constructor]] void find_objects()
{
    library = object_of(dlsym(RTLD_NEXT, "kel_tracepoint"));
    ours = object_of(reinterpret_cast<const void *>(&find_objects));
}

// A last step of a function of the library returns to whoever called that, which is a wrapper of ours.
bool is_in_library(const void *address)
{
    return library.holds(address) || ours.holds(address);
}

// In the order of their first calls.
unsigned number_of_thread()
{
    static std::atomic<unsigned> threads;
    thread_local const unsigned own = ++threads;
    return own;
}

iovec part(const char *text)
{
    return {const_cast<char *>(text), strlen(text)};
}

// The library reads its own MP id once, as this does. The library keeps the first id that is not 0, so the line is
// written once.
void write_mp_id()
{
    static std::atomic<bool> written;
    const char *text = written ? nullptr : getenv("MPID");
    const auto id = static_cast<uint8_t>(text ? strtol(text, nullptr, 10) : 0);
    if (id == 0 || written.exchange(true))
        return;
    char line[16];
    snprintf(line, sizeof line, "mpid %u\n", id);
    append(line);
}

} // namespace

// Calls within one of the program's calls are not the program's, wherever they return to.
bool is_programs_call(const void *returns_to)
{
    return recording() && !under_way && !is_in_library(returns_to);
}

call::call(const char *command) : line(command), errno_before_(errno)
{
    under_way = this;
}

call::~call()
{
    under_way = nullptr;
}

void call::begin()
{
    write_mp_id();
    char thread[32];
    snprintf(thread, sizeof thread, "# thread %u: ", number_of_thread());
    const iovec parts[] = {part(thread), part(line.finished()), part("\n")};
    append(parts, 3);
    errno = errno_before_;
}

// Everything is appended in one write, so that lines of several threads do not mix.
void call::end(uint32_t code)
{
    const int errno_after = errno;
    char faults[most_refusals * 96] = {};
    size_t size = 0;
    for (size_t i = 0; i < refusal_count_; ++i) {
        const refusal &one = refusals_[i];
        const auto &[name, called_by_both_threads] = closed_functions[one.function];
        char times[16] = {};
        if (one.times > 1)
            snprintf(times, sizeof times, "*%u", one.times);
        size += static_cast<size_t>(snprintf(faults + size, sizeof faults - size, "fault add %s:%u%s=%ld%s\n", name,
                                             one.first, times, one.code, called_by_both_threads ? ",own-thread" : ""));
    }
    char result[48];
    snprintf(result, sizeof result, line.is_command() ? "expect %u " : "# thread %2$u returned %1$u: ", code,
             number_of_thread());
    const iovec parts[] = {part(faults), part(more_refusals_ ? "# further closed calls failed\n" : ""), part(result),
                           part(line.finished()), part("\n")};
    append(parts, 5);
    errno = errno_after;
}

// Refusals of one function in a row, with one code, become one line with a count. The newest of the function decides:
// an older one cannot be continued.
void call::note(size_t function, int64_t code)
{
    const uint32_t number = ++counts_[function];
    if (code == 0)
        return;
    for (size_t i = refusal_count_; i-- > 0;) {
        refusal &last = refusals_[i];
        if (last.function != function)
            continue;
        if (last.code != code || last.first + last.times != number)
            break;
        ++last.times;
        return;
    }
    if (refusal_count_ == most_refusals)
        more_refusals_ = true;
    else
        refusals_[refusal_count_++] = {function, number, 1, code};
}

// Not under a call of the program and yet from the library: its own thread.
void note_closed_call(size_t function, int64_t code, const void *returns_to)
{
    if (!is_in_library(returns_to))
        return;
    if (under_way)
        return under_way->note(function, code);
    if (code == 0 || !recording())
        return;
    const int errno_after = errno;
    char comment[128];
    snprintf(comment, sizeof comment, "# the library's own thread: %s returned %ld\n", closed_functions[function].name,
             code);
    append(comment);
    errno = errno_after;
}

} // namespace kel_record
