// A whole run of a control process over the software accelerator that fires every one of the nine events, with and
// without failures. Prints each record that the process itself saw fired, as "tid provider:event location domain
// message".
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"
#include "softnode/softnode.h"
#include "trace/tap.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace
{

constexpr uint32_t patience_ms = 60000;

std::mutex print_mutex;

void print(const trace::record &record)
{
    const std::lock_guard lock(print_mutex);
    printf("%ld %s:%s %s %s %s\n", syscall(SYS_gettid), record.provider, record.event, record.location, record.domain,
           record.message);
}

void check(bool holds, const char *what)
{
    if (holds)
        return;
    fprintf(stderr, "control_process: not so: %s\n", what);
    exit(1);
}

void add_faults(const char *rules)
{
    char *problem = softnode_faults_add(rules);
    check(!problem, problem ? problem : "");
}

kel_ebcom_path_config path_to(uint8_t b2, uint8_t b3, int32_t port)
{
    kel_ebcom_path_config path = {};
    path.dst_mac[0] = 2;
    path.dst_mac[2] = b2;
    path.dst_mac[3] = b3;
    path.iell_port = port;
    return path;
}

void bring_up()
{
    const kel_ebcom_global_params params = {1500, 0x88B5};
    const uint8_t settings[2] = {1, 2};
    kel_vsi_t vsi = 0;
    uint16_t out = 0;
    check(kel_core_ic_ebcom_global_param_set(&params, settings) == 0, "parameters set");
    check(kel_core_ic_ebcom_interface_create(&vsi, &out) == 0, "interface created");
    check(kel_core_ic_ebcom_start() == 0, "service started");
    check(softnode_timing_settle(patience_ms) == 1, "timestamp thread waits");
}

void use_paths()
{
    const kel_ebcom_path_config cpu = path_to(7, 0, 6); // asks for the own MP id
    const kel_ebcom_path_config ob = path_to(0, 2, 6);
    kel_ebcom_path_config other_shaping = ob;
    other_shaping.shaping_rate = 1000;
    check(kel_core_ic_ebcom_path_add(&cpu) == 0, "CPU path added");
    check(kel_core_ic_ebcom_path_add(&ob) == 0, "OB path added on the same queue");
    check(kel_core_ic_ebcom_path_add(&other_shaping) == 7, "other shaping refused");
    add_faults("ork_ebcom_pcep_path_create:1=-4");
    check(kel_core_ic_ebcom_path_add(&ob) == 13, "driver-kit failure told as 13");
    check(kel_core_ic_ebcom_path_rem(&ob) == 0, "OB path removed");
    check(kel_core_ic_ebcom_path_rem(&ob) == 4, "nothing left to remove");
    check(kel_core_ic_ebcom_path_rem(&cpu) == 0, "CPU path removed");
}

void use_pceps()
{
    kel_pcep_config on_hsfp = {};
    on_hsfp.local_mac[3] = 3;
    on_hsfp.remote_mac[3] = 2;
    ebcom_pcep_stats stats;
    check(kel_core_ic_pcep_start() == 0, "PCEP service started");
    check(kel_core_ic_pcep_add(7, &on_hsfp) == 0, "PCEP added and bound");
    check(kel_core_ic_pcep_mc_group_add(300) == 0, "group added");
    check(kel_core_ic_pcep_mc_member_add(300, 7) == 0, "member added");
    check(kel_ic_pcep_get_stats(300, &stats) == 11, "a group has no statistics");
    check(kel_core_ic_pcep_mc_member_rem(300, 7) == 0, "member removed");
    check(kel_core_ic_pcep_mc_group_rem(300) == 0, "group removed");
    check(kel_core_ic_pcep_rem(7) == 0, "PCEP removed");
    check(kel_core_ic_pcep_stop() == 0, "PCEP service stopped");
}

void move_the_timing_unit()
{
    softnode_timing_event_post(5, 0);
    softnode_timing_event_post(6, 1);
    softnode_timing_event_post(6, 0);
    check(softnode_timing_settle(patience_ms) == 1, "timestamp thread took the events");
    add_faults("vorn_tu_get_nputimeoffset=-5");
    softnode_timing_event_post(6, 0); // the thread's last: EXCEPTION and ERROR
    check(softnode_timing_settle(patience_ms) == 1, "timestamp thread gave up");
}

} // namespace

int main()
{
    setenv("MPID", "7", 1);
    if (!trace::listen(print))
        fprintf(stderr, "control_process: the tracer is not installed\n");
    bring_up();
    use_paths();
    use_pceps();
    move_the_timing_unit();
    check(kel_core_ic_ebcom_stop() == 0, "service stopped");
    check(kel_core_ic_ebcom_interface_delete() == 0, "interface deleted");
}
