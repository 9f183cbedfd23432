// Loading libpcap by its soname, Debian's or its makers'. A program that is linked to it could not start where it is
// missing.
#include "kelctl/capture/pcap_library.h"

#include <fmt/core.h>

#include <dlfcn.h>
#include <initializer_list>
#include <stdexcept>

namespace kelctl
{
namespace
{

void *loaded()
{
    for (const char *soname : {"libpcap.so.0.8", "libpcap.so.1"})
        if (void *library = dlopen(soname, RTLD_NOW | RTLD_LOCAL))
            return library;
    throw std::runtime_error(fmt::format("captures need libpcap: {}", dlerror()));
}

template <typename Function> void look_up(void *library, const char *name, Function &function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (!function)
        throw std::runtime_error(fmt::format("captures need libpcap: {}", dlerror()));
}

// All are looked up at once: a library that lacks one is refused before anything is read.
pcap_library functions_of(void *library)
{
    pcap_library all{};
    look_up(library, "pcap_close", all.close);
    look_up(library, "pcap_datalink", all.datalink);
    look_up(library, "pcap_datalink_val_to_name", all.datalink_val_to_name);
    look_up(library, "pcap_dump", all.dump);
    look_up(library, "pcap_dump_close", all.dump_close);
    look_up(library, "pcap_dump_fopen", all.dump_fopen);
    look_up(library, "pcap_fopen_offline_with_tstamp_precision", all.fopen_offline_with_tstamp_precision);
    look_up(library, "pcap_geterr", all.geterr);
    look_up(library, "pcap_next_ex", all.next_ex);
    look_up(library, "pcap_open_dead_with_tstamp_precision", all.open_dead_with_tstamp_precision);
    return all;
}

} // namespace

const pcap_library &libpcap()
{
    static const pcap_library library = functions_of(loaded());
    return library;
}

} // namespace kelctl
