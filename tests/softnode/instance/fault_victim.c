/*
 * fault_victim.c - a control process that knows nothing of the software accelerator: attaches three times and tells
 * the codes.
 */
#include "platform/kel_init.h"

#include <stdio.h>

int main(void)
{
    kel_attach_info attach;
    for (int count = 0; count < 3; ++count)
        printf("%u\n", kel_init_attach(&attach));
    return 0;
}
