/*
 * platform.h - the closed libraries' interfaces, declared as exports of this library.
 *
 * Everything in this folder includes these headers through here: whoever declares a closed function first decides
 * whether it is visible outside.
 */
#ifndef SOFTNODE_PLATFORM_H
#define SOFTNODE_PLATFORM_H

#pragma GCC visibility push(default)
#include "platform/kei_util.h"
#include "platform/kel_fmt.h"
#include "platform/kel_init.h"
#include "platform/ork.h"
#include "platform/qol_ng.h"
#include "platform/vorn_tu.h"
#pragma GCC visibility pop

#endif
