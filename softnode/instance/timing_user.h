/*
 * timing_user.h - the calling thread as a user of the timing unit.
 */
#ifndef SOFTNODE_TIMING_USER_H
#define SOFTNODE_TIMING_USER_H

#include "softnode/node/timing_unit.h"

namespace softnode
{

/** The thread's number, from 1 and its alone. The user leaves the timing unit when the thread ends. */
User this_thread();

} // namespace softnode

#endif
