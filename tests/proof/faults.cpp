#include "faults.h"

#include <map>

namespace proof
{
namespace
{

const std::vector<int64_t> none;
const std::vector<int64_t> driver_kit = {-1, -2, -3, -4, -5, -6, -7, -8, -9, -12, 3};
const std::vector<int64_t> companion = {1, 3, 13, 255};

// By the function's whole name, or by the beginning of it. The first that fits.
const std::vector<std::pair<std::string, std::vector<int64_t>>> codes = {
    {"ork_sys_status_get", {}},
    {"ork_syshandle_get", {-1}},        // whose result does not matter
    {"kel_init_dump_ork_handles", {1}}, // nor its
    {"qol_ng_", {-1, 1}},               // nor its
    {"pthread_create", {-1, -11, 11}},  // a positive one is taken for a success
    {"pthread_setname_np", {-1, -34, 34}},
    {"g_hash_table_new_full", {1}},
    {"g_hash_table_destroy", {}},
    {"malloc", {1}},
    {"fopen", {13, 30, -5}}, // the errno it leaves; a negative one is never seen in the field
    {"fprintf", {-1, -2}},
    {"fclose", {-1}}, // whose result does not matter
    {"ork_", driver_kit},
    {"vorn_", driver_kit},
    {"kel_", companion},
};

} // namespace

const std::vector<int64_t> &codes_of(const std::string &function)
{
    for (const auto &[beginning, result] : codes)
        if (function.starts_with(beginning))
            return result;
    return none;
}

} // namespace proof
