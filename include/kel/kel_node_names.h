/**
 * @file kel_node_names.h
 * The names of IC ports and of locations, as trace records print them.
 *
 * The library and every tool that prints or reads these names take them from here. The library exports nothing for them.
 */
#ifndef KEL_NODE_NAMES_H
#define KEL_NODE_NAMES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** How many IC ports and locations have names. */
enum {
    KEL_IELL_PORT_COUNT = 51, /**< ports 0 to 50 */
    KEL_LOCATION_COUNT = 6    /**< locations 0 to 5 */
};

/** Where a MAC address sits in the node, see kel_ic_pcep_get_location_and_type_from_branch(). */
enum kel_location {
    KEL_LOCATION_NONE = 0,     /**< not used for addresses */
    KEL_LOCATION_CPU = 1,      /**< a processor, this one or another */
    KEL_LOCATION_OB = 2,       /**< OB */
    KEL_LOCATION_HSFP = 3,     /**< HSFP: a PCEP whose local address sits there is bound to the EHSFP */
    KEL_LOCATION_EIOA = 4,     /**< EIOA */
    KEL_LOCATION_MULTICAST = 5 /**< not used for addresses: the entry of a multicast group */
};

/** The branch name of an IC port, "UNKNOWN" outside 0 to 50. A row's index is the port's number: never sort it. */
static inline const char *kel_branch_name(int32_t iell_port)
{
    static const char branch_names[KEL_IELL_PORT_COUNT][40] = {
        "NONE",      "HERON",     "KESP1",    "KESP2",    "KESQ1",    "KESQ2", "RLU1P", "RLU1Q",     "RLU2P",
        "RLU2Q",     "RLU3P",     "RLU3Q",    "RLU4P",    "RLU4Q",    "DEBUG", "MZP",   "MZQ",       "MZR",
        "MZS",       "RLU1R",     "RLU1S",    "RLU1T",    "RLU1U",    "RLU1V", "RLU1W", "RLU2R",     "RLU2S",
        "RLU2T",     "RLU2U",     "RLU2V",    "RLU2W",    "RLU3R",    "RLU3S", "RLU3T", "RLU3U",     "RLU3V",
        "RLU3W",     "RLU4R",     "RLU4S",    "RLU4T",    "RLU4U",    "RLU4V", "RLU4W", "MZ-KES_P1", "MZ-KES_P2",
        "MZ-KES_P3", "MZ-KES_P4", "MZ-KES_Q", "MZ-KES_R", "MZ-KES_S", "MZ_T"};
    return iell_port >= 0 && iell_port < KEL_IELL_PORT_COUNT ? branch_names[iell_port] : "UNKNOWN";
}

/** The name of a location, "UNKNOWN" for a code above 5. */
static inline const char *kel_location_name(uint32_t location)
{
    static const char location_names[KEL_LOCATION_COUNT][10] = {"NONE", "CPU", "OB", "HSFP", "EIOA", "MULTICAST"};
    return location < KEL_LOCATION_COUNT ? location_names[location] : "UNKNOWN";
}

#ifdef __cplusplus
}
#endif

#endif
