// The measure of the library's own cost: for each operation the outside calls that it has to make, with the records
// that they are given, the GLib tables that it has to keep and the text that it has to make, called directly and in
// the same order. No checks, no traces, no registry, no look-up of what goes where.
#pragma once

#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"

namespace bare
{

// ---- EBCOM ----

void ebcom_start();
void ebcom_stop();
void init_qos();
void deinit_qos();
void global_param_set(const kel_ebcom_global_params &params, const uint8_t (&settings)[2]);
void interface_create(kel_vsi_t &vsi, uint16_t &out);
void interface_delete();

// The port that a destination is on. The first one there makes the queue, the last one removes it.
enum class port { empty, used };
void add_shaper(const kel_ebcom_path_config &config, port where, ork_ebcom_pcep_path &path);
void remove_shaper(const kel_ebcom_path_config &config, port where);
void path_add(const kel_ebcom_path_config &config, port where);
void path_rem(const kel_ebcom_path_config &config, port where);

// The destination is looked for on the used port.
bool find_destination(const uint8_t *mac);
void get_global_stats(ebcom_global_stats &stats);
void format_global_stats(char *buf, uint32_t len, uint8_t format);
void get_queue_stats(const uint8_t *mac, ebcom_queue_stats &stats);
void format_queue_stats(const uint8_t *mac, char *buf, uint32_t len, uint8_t format);
void format_queue_stats_2(const uint8_t *mac, char *buf, uint32_t len, uint8_t format);
void dump_handles();

// ---- PCEP ----

void pcep_start();
void pcep_stop();
void dump_pcep_handles(void *destination);
void pcep_add(uint32_t pcep_id, const kel_pcep_config &config, bool bound);
void pcep_rem(uint32_t pcep_id, bool bound);
void group_add(uint32_t pcep_id);
void group_rem(uint32_t pcep_id);
void member_add(uint32_t group_id, uint32_t pcep_id);
void member_rem(uint32_t group_id, uint32_t pcep_id);
void get_pcep_stats(uint32_t pcep_id, ebcom_pcep_stats &stats);
void get_compact_pcep_stats(uint32_t pcep_id, pcep_stats &stats);
void format_pcep_stats(uint32_t pcep_id, char *buf, uint32_t len, uint8_t format);

} // namespace bare
