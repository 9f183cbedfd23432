// libpcap, loaded by whoever needs it: no command but a replay maps it.
#pragma once

#include <pcap/pcap.h>

namespace kelctl
{

// Its functions under their own names, less "pcap_".
struct pcap_library {
    decltype(&pcap_close) close;
    decltype(&pcap_datalink) datalink;
    decltype(&pcap_datalink_val_to_name) datalink_val_to_name;
    decltype(&pcap_dump) dump;
    decltype(&pcap_dump_close) dump_close;
    decltype(&pcap_dump_fopen) dump_fopen;
    decltype(&pcap_fopen_offline_with_tstamp_precision) fopen_offline_with_tstamp_precision;
    decltype(&pcap_geterr) geterr;
    decltype(&pcap_next_ex) next_ex;
    decltype(&pcap_open_dead_with_tstamp_precision) open_dead_with_tstamp_precision;
};

// Loads it the first time. Throws std::runtime_error where it is not installed.
const pcap_library &libpcap();

} // namespace kelctl
