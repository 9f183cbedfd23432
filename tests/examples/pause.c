/*
 * pause.c - loaded in front of an example: when the example begins to take its PCEPs down, it writes a line and waits
 * until its standard input ends. A whole node is up then.
 */
#include <dlfcn.h>
#include <stdint.h>
#include <string.h>
#include <unistd.h>

static void wait_once(void)
{
    static int waited = 0;
    char octet = 0;
    if (!waited++ && write(STDERR_FILENO, "up\n", 3) == 3)
        while (read(STDIN_FILENO, &octet, 1) > 0)
            ;
}

static void find(const char *name, void *function)
{
    void *const next = dlsym(RTLD_NEXT, name);
    memcpy(function, &next, sizeof next);
}

uint32_t kel_core_ic_pcep_rem(uint32_t id);

uint32_t kel_core_ic_pcep_rem(uint32_t id)
{
    uint32_t (*next)(uint32_t) = NULL;
    find("kel_core_ic_pcep_rem", &next);
    wait_once();
    return next(id);
}

uint32_t kel_core_ic_pcep_mc_member_rem(uint32_t group, uint32_t id);

uint32_t kel_core_ic_pcep_mc_member_rem(uint32_t group, uint32_t id)
{
    uint32_t (*next)(uint32_t, uint32_t) = NULL;
    find("kel_core_ic_pcep_mc_member_rem", &next);
    wait_once();
    return next(group, id);
}
