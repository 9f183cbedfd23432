// The functions behind those that a test double replaces for the whole process. Looked up before any library is
// initialised, at times before a sanitizer is up: free of the sanitizer's calls.
#pragma once

#include <dlfcn.h>

#define EARLY __attribute__((no_sanitize("thread", "address", "undefined"), noinline))

namespace scripted
{

// `interceptor` is the function's name with "__interceptor_" before it. That is what a sanitizer that is linked into the
// program calls its own version; one in a shared library, and the C library, have the plain name.
template <typename Function> EARLY void find_real(const char *interceptor, Function &function)
{
#ifdef KEL_SANITIZER_LINKED_IN
    if (void *const own = dlsym(RTLD_DEFAULT, interceptor)) {
        function = reinterpret_cast<Function>(own);
        return;
    }
#endif
    function = reinterpret_cast<Function>(dlsym(RTLD_NEXT, interceptor + sizeof "__interceptor_" - 1));
}

} // namespace scripted
