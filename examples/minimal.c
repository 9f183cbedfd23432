/*
 * minimal.c - the smallest whole control process: a path, an end point, counters, and down again in reverse order.
 * It is C++20 as well, hence the order of the initialisers.
 *     cc minimal.c -lkel-core-ic -o minimal          (uninstalled or elsewhere: pkg-config --cflags --libs kel-core-ic)
 */
#include <kel/kel_core_ic_ebcom.h>
#include <kel/kel_core_ic_pcep.h>
#include <stdio.h>

static int failed = 0;

/* Prints the result of a step, and returns whether it succeeded. */
static int ok(const char *step, uint32_t rc)
{
    if (rc == 0)
        printf("%-16s done\n", step);
    else
        printf("%-16s failed with code %u\n", step, rc); /* enum kel_init_rc names it */
    failed |= rc != 0;
    return rc == 0;
}

int main(void)
{
    const kel_ebcom_global_params params = {.icPortMTU = 1500, .etherType = 0x88b5};
    const uint8_t settings[2] = {1, 2};
    const kel_ebcom_path_config path = {
        .dst_mac = {2, 0, 0, 2, 0, 1},
        .shaping_enabled = 1,
        .iell_port = 6,           /* RLU1P */
        .shaping_rate = 100000,   /* kbit/s */
        .buffer_threshold = 4096, /* blocks of 256 octets */
        .burst_size = 65536,      /* octets */
    };
    const kel_pcep_config pcep = {
        .remote_pcep_id = {7}, .local_mac = {2, 0, 0, 3, 0, 1}, .remote_mac = {2, 0, 0, 2, 0, 1}, .vlan_id = 100};
    kel_vsi_t vsi = 0;
    uint16_t device = 0;
    ebcom_queue_stats stats;
    int made = 0;
    made += ok("parameters", kel_core_ic_ebcom_global_param_set(&params, settings));
    made += made == 1 && ok("interface", kel_core_ic_ebcom_interface_create(&vsi, &device));
    made += made == 2 && ok("EBCOM start", kel_core_ic_ebcom_start());
    made += made == 3 && ok("path add", kel_core_ic_ebcom_path_add(&path));
    made += made == 4 && ok("PCEP start", kel_core_ic_pcep_start());
    made += made == 5 && ok("PCEP add", kel_core_ic_pcep_add(1, &pcep));
    if (made == 6 && ok("counters", kel_core_ic_ebcom_queue_stats_get(path.dst_mac, &stats)))
        printf("  sent %u, dropped %u, waiting %u\n", stats.pkts_tx, stats.pkts_dropped, stats.pkts_out_standing);
    if (made >= 6)
        ok("PCEP remove", kel_core_ic_pcep_rem(1));
    if (made >= 5)
        ok("PCEP stop", kel_core_ic_pcep_stop());
    if (made >= 4)
        ok("path remove", kel_core_ic_ebcom_path_rem(&path));
    if (made >= 3)
        ok("EBCOM stop", kel_core_ic_ebcom_stop());
    if (made >= 2)
        ok("interface delete", kel_core_ic_ebcom_interface_delete());
    return failed;
}
