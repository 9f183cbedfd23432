/*
 * user.h - whoever calls the closed functions.
 */
#ifndef SOFTNODE_USER_H
#define SOFTNODE_USER_H

#include <cstdint>

namespace softnode
{

/* One number per thread of the process, from 1. */
using User = std::uint64_t;

} // namespace softnode

#endif
