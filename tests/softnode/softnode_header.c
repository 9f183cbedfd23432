/*
 * softnode_header.c - softnode.h compiles alone, as C.
 */
#include "softnode/softnode.h"
