// Opening, writing and closing the library's dump file. Every other file in this process is left to the real functions,
// which are looked up before any library is initialised, because the tracer's threads open files early.
#include "scripted_dump_file.h"

#include "real_function.h"
#include "script.h"

#include <sys/mman.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <iterator>

using scripted::find_real;
using scripted::logged_result;

namespace
{

constexpr const char *dump_path = "/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME";

std::atomic<FILE *> dump; // while the library has it open

struct real_functions {
    decltype(&fopen) open;
    int (*close)(FILE *stream);
} real;

EARLY void find_real_functions()
{
    find_real("__interceptor_fopen", real.open);
    find_real("__interceptor_fclose", real.close);
}

[[gnu::section(".preinit_array"), gnu::used]] void (*const before_any_library)() = find_real_functions;

std::string own_path()
{
    static const int file = memfd_create("handle dump", MFD_CLOEXEC);
    return "/proc/self/fd/" + std::to_string(file);
}

// On one line of the transcript.
std::string escaped(const std::string &text)
{
    std::string result;
    for (const char each : text)
        result += each == '\n' ? "\\n" : std::string(1, each);
    return result;
}

int write_dump(FILE *stream, const char *format, va_list values)
{
    char text[256];
    const int length = vsnprintf(text, sizeof text, format, values);
    if (const int64_t rc = logged_result("fprintf", escaped(text))) {
        errno = ENOSPC;
        return static_cast<int>(rc);
    }
    return fputs(text, stream) < 0 ? -1 : length;
}

int write(FILE *stream, const char *format, va_list values)
{
    return stream == dump ? write_dump(stream, format, values) : vfprintf(stream, format, values);
}

} // namespace

std::string scripted::dump_file_text()
{
    std::ifstream file(own_path());
    return {std::istreambuf_iterator(file), {}};
}

void scripted::set_dump_file_text(const std::string &text)
{
    std::ofstream(own_path()) << text;
}

extern "C" FILE *fopen(const char *path, const char *mode)
{
    if (strcmp(path, dump_path) != 0)
        return real.open(path, mode);
    if (const int64_t number = logged_result(__func__, scripted::text("%s, %s", path, mode))) {
        errno = static_cast<int>(number);
        return nullptr;
    }
    return dump = real.open(own_path().c_str(), mode);
}

extern "C" int fprintf(FILE *stream, const char *format, ...)
{
    va_list values;
    va_start(values, format);
    const int result = write(stream, format, values);
    va_end(values);
    return result;
}

// What fortified code calls instead.
extern "C" int __fprintf_chk(FILE *stream, int, const char *format, ...)
{
    va_list values;
    va_start(values, format);
    const int result = write(stream, format, values);
    va_end(values);
    return result;
}

extern "C" int fclose(FILE *stream)
{
    if (stream != dump)
        return real.close(stream);
    const int64_t rc = logged_result(__func__, "");
    dump = nullptr;
    const int result = real.close(stream);
    if (!rc)
        return result;
    errno = ENOSPC;
    return static_cast<int>(rc);
}
