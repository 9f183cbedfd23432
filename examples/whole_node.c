/*
 * whole_node.c - a control process that cleans up after any failure. Each step names the operation that undoes it; after
 * a failure, and at the end, what is up goes down in reverse order.
 *     cc whole_node.c $(pkg-config --cflags --libs kel-core-ic) -o whole_node
 */
#include <kel/kel_core_ic_ebcom.h>
#include <kel/kel_core_ic_pcep.h>
#include <platform/kei_util.h>
#include <stdio.h>

enum { pcep_id = 7, group_id = 300 };

static const kel_ebcom_path_config path = {.dst_mac = {2, 0, 0, 2, 0, 1},
                                           .shaping_enabled = 1,
                                           .iell_port = 6,           /* RLU1P */
                                           .shaping_rate = 100000,   /* kbit/s */
                                           .buffer_threshold = 4096, /* blocks of 256 octets */
                                           .burst_size = 65536 /* octets */};

static uint32_t set_parameters(void)
{
    const kel_ebcom_global_params params = {.icPortMTU = 1500, .etherType = 0x88b5};
    const uint8_t settings[2] = {1, 2};
    return kel_core_ic_ebcom_global_param_set(&params, settings);
}

static uint32_t create_interface(void)
{
    kel_vsi_t vsi;
    uint16_t out;
    return kel_core_ic_ebcom_interface_create(&vsi, &out);
}

static uint32_t add_path(void)
{
    return kel_core_ic_ebcom_path_add(&path);
}

/* A removal that fails may have released the reference on the queue. Without one, a second removal returns 4. */
static uint32_t remove_path(void)
{
    ork_ebcom_pcep_path unused;
    const uint32_t rc = kel_core_ic_ebcom_path_rem(&path);
    if (rc == 0 || kel_ic_ebcom_add_shaper(&path, &unused) != 0)
        return rc;
    return kel_core_ic_ebcom_path_rem(&path);
}

static uint32_t add_pcep(void)
{
    const kel_pcep_config config = {.remote_pcep_id = {9, 0, 0}, /* little-endian: 9 */
                                    .local_mac = {2, 0, 0, 3, 0, 1},
                                    .remote_mac = {2, 0, 0, 2, 0, 1},
                                    .vlan_id = 100};
    return kel_core_ic_pcep_add(pcep_id, &config);
}

static uint32_t remove_pcep(void)
{
    return kel_core_ic_pcep_rem(pcep_id);
}

static uint32_t add_group(void)
{
    return kel_core_ic_pcep_mc_group_add(group_id);
}

static uint32_t remove_group(void)
{
    return kel_core_ic_pcep_mc_group_rem(group_id);
}

static uint32_t add_member(void)
{
    return kel_core_ic_pcep_mc_member_add(group_id, pcep_id);
}

static uint32_t remove_member(void)
{
    return kel_core_ic_pcep_mc_member_rem(group_id, pcep_id);
}

static const struct step {
    const char *name;
    uint32_t (*up)(void);
    uint32_t (*down)(void); /* null: nothing to undo */
    int leaves;             /* a failed up() leaves something that down() removes */
    int repeat;             /* a failed down() can be called again */
} steps[] = {
    {"parameters", set_parameters, NULL, 0, 0},
    {"interface", create_interface, kel_core_ic_ebcom_interface_delete, 1, 1},
    {"EBCOM service", kel_core_ic_ebcom_start, kel_core_ic_ebcom_stop, 1, 1},
    {"path", add_path, remove_path, 0, 0}, /* what a failed add leaves, the stop removes */
    {"PCEP service", kel_core_ic_pcep_start, kel_core_ic_pcep_stop, 0, 0},
    {"PCEP", add_pcep, remove_pcep, 0, 0},
    {"group", add_group, remove_group, 0, 0},
    {"member", add_member, remove_member, 0, 1},
};
enum { step_count = sizeof steps / sizeof steps[0] };

static uint32_t reported(const char *direction, const char *name, uint32_t rc)
{
    printf("%-4s  %-13s  %s\n", direction, name, kei_util_init_rc_str_get(rc));
    return rc;
}

static uint32_t bring_down(const struct step *step)
{
    if (!step->down)
        return 0;
    const uint32_t rc = reported("down", step->name, step->down());
    return rc == 0 || !step->repeat ? rc : reported("down", step->name, step->down());
}

int main(void)
{
    uint32_t failed = 0;
    int made = 0;
    while (made < step_count && !failed) {
        failed = reported("up", steps[made].name, steps[made].up());
        made += !failed || steps[made].leaves;
    }

    /* Here the node works, unless a step failed. */

    while (made > 0)
        failed |= bring_down(&steps[--made]);
    return failed != 0;
}
