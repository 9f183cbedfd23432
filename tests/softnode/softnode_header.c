/*
 * softnode_header.c - softnode.h compiles alone, as C, and its record has the layout that programs were built against.
 */
#include "softnode/softnode.h"

#include <stddef.h>

/* The one record of the interface that its callers fill. */
_Static_assert(sizeof(softnode_scenario) == 40, "softnode_scenario has another size");
_Static_assert(offsetof(softnode_scenario, clean_up) == 8, "clean_up sits elsewhere");
_Static_assert(offsetof(softnode_scenario, describe) == 16, "describe sits elsewhere");
_Static_assert(offsetof(softnode_scenario, context) == 24, "context sits elsewhere");
_Static_assert(offsetof(softnode_scenario, time_limit) == 32, "time_limit sits elsewhere");
