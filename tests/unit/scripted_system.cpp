// The functions of the system and of GLib that the library must cope with when they fail. Each acts for the library
// under test only; everybody else in this process gets the real one.
//
// The tracer's threads call some of them while the loader still holds its lock. So nothing may ask the loader then: the
// real functions are looked up before any library is initialised, the library's place right afterwards.
#include "real_function.h"
#include "script.h"
#include "transcript.h"

#include <glib.h>
#include <pthread.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <sys/syscall.h>
#include <unistd.h>

using scripted::find_real;
using scripted::logged_result;
using scripted::next_result;

namespace
{

struct real_functions {
    decltype(&pthread_create) create_thread;
    decltype(&pthread_setname_np) name_thread;
    decltype(&g_hash_table_new_full) new_table;
    decltype(&g_hash_table_destroy) destroy_table;
    decltype(&::malloc) allocate;
    decltype(&::strerror) error_text;
    decltype(&::syscall) system_call;
} real;

void find_real_functions()
{
    find_real("__interceptor_pthread_create", real.create_thread);
    find_real("__interceptor_pthread_setname_np", real.name_thread);
    find_real("__interceptor_g_hash_table_new_full", real.new_table);
    find_real("__interceptor_g_hash_table_destroy", real.destroy_table);
    find_real("__interceptor_malloc", real.allocate);
    find_real("__interceptor_strerror", real.error_text);
    find_real("__interceptor_syscall", real.system_call);
}

[[gnu::section(".preinit_array"), gnu::used]] void (*const before_any_library)() = find_real_functions;

// Where the library under test lies in memory.
struct {
    uintptr_t begin;
    uintptr_t end;
} library;

int note_library(dl_phdr_info *info, size_t, void *)
{
    if (!strstr(info->dlpi_name, "libkel-core-ic.so"))
        return 0;
    library.begin = info->dlpi_addr;
    for (int i = 0; i < info->dlpi_phnum; ++i)
        if (const ElfW(Phdr) &segment = info->dlpi_phdr[i]; segment.p_type == PT_LOAD)
            library.end = info->dlpi_addr + segment.p_vaddr + segment.p_memsz;
    return 1;
}

[[gnu::constructor]] void find_library()
{
    dl_iterate_phdr(note_library, nullptr);
}

bool in_library(const void *address)
{
    const auto place = reinterpret_cast<uintptr_t>(address);
    return place >= library.begin && place < library.end;
}

// Apart, so that malloc has nothing to clean up and can hand on by a tail call.
[[gnu::noinline]] bool is_made_to_fail(const char *function)
{
    return next_result(function).has_value();
}

} // namespace

#define CALLED_BY_LIBRARY() in_library(__builtin_return_address(0))

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*entry)(void *),
                              void *argument) noexcept
{
    if (!CALLED_BY_LIBRARY())
        return real.create_thread(thread, attributes, entry, argument);
    const auto *octet = static_cast<const uint8_t *>(argument);
    if (const int64_t rc = logged_result(__func__, scripted::text("%s, %u", attributes ? "?" : "default", *octet))) {
        memset(thread, 0x5A, sizeof *thread); // the C library writes an identifier before it fails
        errno = EAGAIN;
        return static_cast<int>(rc);
    }
    return real.create_thread(thread, attributes, entry, argument);
}

extern "C" int pthread_setname_np(pthread_t thread, const char *name) noexcept
{
    if (!CALLED_BY_LIBRARY())
        return real.name_thread(thread, name);
    if (const int64_t rc = logged_result(__func__, name)) {
        errno = ERANGE;
        return static_cast<int>(rc);
    }
    return real.name_thread(thread, name);
}

extern "C" GHashTable *g_hash_table_new_full(GHashFunc hash, GEqualFunc equal, GDestroyNotify free_key,
                                             GDestroyNotify free_value)
{
    if (CALLED_BY_LIBRARY() && next_result(__func__))
        return nullptr;
    return real.new_table(hash, equal, free_key, free_value);
}

extern "C" void g_hash_table_destroy(GHashTable *table)
{
    if (CALLED_BY_LIBRARY())
        logged_result(__func__, table ? "a table" : "null");
    else
        real.destroy_table(table);
}

// Copies of a MAC address are the library's only blocks of 6 bytes. No other allocation is looked at: the test's own
// bookkeeping allocates, too.
extern "C" void *malloc(size_t size) noexcept
{
    if (!real.allocate) // a sanitizer being set up: nothing else runs yet
        find_real("__interceptor_malloc", real.allocate);
    if (size == 6 && CALLED_BY_LIBRARY() && is_made_to_fail(__func__))
        return nullptr;
    return real.allocate(size);
}

extern "C" char *strerror(int number) noexcept
{
    if (CALLED_BY_LIBRARY())
        logged_result(__func__, std::to_string(number));
    return real.error_text(number);
}

// The library asks the kernel for one thing only, its thread's number. Six arguments are what any system call may have.
extern "C" long syscall(long number, ...) noexcept
{
    if (CALLED_BY_LIBRARY())
        logged_result(__func__, number == SYS_gettid ? "gettid" : std::to_string(number));
    va_list values;
    va_start(values, number);
    long argument[6];
    for (long &each : argument)
        each = va_arg(values, long);
    va_end(values);
    return real.system_call(number, argument[0], argument[1], argument[2], argument[3], argument[4], argument[5]);
}
