/*
 * records.h - whether a record has the driver kit's form: the constants where they belong, zero in everything
 * reserved. What the rest of it says is not judged here.
 */
#ifndef SOFTNODE_RECORDS_H
#define SOFTNODE_RECORDS_H

#include "softnode/platform.h"

namespace softnode
{

bool well_formed(const ork_ebcom_pcep_params &params);
bool well_formed(const ork_bind_params &params);
bool well_formed(const ork_ebcom_multicast_group &params);

} // namespace softnode

#endif
