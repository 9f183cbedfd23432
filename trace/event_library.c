/*
 * An event library: the event objects of one provider, and nothing of the tracer. It needs libc only, so a node without
 * the tracer loads it. Where the tracer is installed, the probes that record the events lie in a companion library, in a
 * folder beside this one, which is opened when this one is loaded. Without the tracer, or without the companion, nothing
 * is opened, and the events stay disabled for good.
 *
 * Compiled once for each provider: KEL_PROVIDER_HEADER and KEL_PROBE_LIBRARY come from the build; the latter
 * with its folder.
 */
#define _GNU_SOURCE
#define LTTNG_UST_TRACEPOINT_DEFINE
#define LTTNG_UST_TRACEPOINT_PROBE_DYNAMIC_LINKAGE
#include KEL_PROVIDER_HEADER

#include <dlfcn.h>
#include <limits.h>
#include <stdio.h>
#include <string.h>

/*
 * The full path of the companion: a bare name is not looked up beside the library that asks for it when the call is
 * intercepted or compiled as a jump. A library that was itself loaded by a relative path has none: nothing is opened
 * relative to the working directory.
 */
static int companion_path(char path[PATH_MAX])
{
    Dl_info own;
    if (!dladdr((const void *)companion_path, &own) || !own.dli_fname || own.dli_fname[0] != '/')
        return 0;
    const int folder_length = (int)(strrchr(own.dli_fname, '/') - own.dli_fname) + 1;
    const int length = snprintf(path, PATH_MAX, "%.*s%s", folder_length, own.dli_fname, KEL_PROBE_LIBRARY);
    return length > 0 && length < PATH_MAX;
}

__attribute__((constructor)) static void open_probes(void)
{
    char path[PATH_MAX];
    if (companion_path(path))
        dlopen(path, RTLD_NOW);
}
