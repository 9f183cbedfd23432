/*
 * fault_sweep.c - what a PCEP leaves behind, whichever call of the closed libraries fails while it is added. Prints the
 * report of softnode_fault_sweep().
 */
#include <kel/kel_core_ic_pcep.h>
#include <softnode/softnode.h>

#include <stdio.h>
#include <stdlib.h>

enum { pcep = 7 };

static uint32_t add(void *context)
{
    const kel_pcep_config config = {.remote_pcep_id = {9, 0, 0},
                                    .local_mac = {2, 0, 0, 3, 0, 1}, /* on the HSFP: gets bound */
                                    .remote_mac = {2, 0, 0, 2, 0, 1},
                                    .vlan_id = 100};
    (void)context;
    const uint32_t rc = kel_core_ic_pcep_start();
    return rc ? rc : kel_core_ic_pcep_add(pcep, &config);
}

static void take_down(void *context)
{
    (void)context;
    kel_core_ic_pcep_rem(pcep);
    kel_core_ic_pcep_stop();
}

int main(void)
{
    const softnode_scenario scenario = {.run = add, .clean_up = take_down};
    char *const report = softnode_fault_sweep(&scenario);
    if (!report)
        return EXIT_FAILURE;
    puts(report);
    free(report);
    return EXIT_SUCCESS;
}
