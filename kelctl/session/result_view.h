// A result as people read it: what is shown on standard output, what went wrong on standard error.
#pragma once

#include "kelctl/session/result.h"

#include <string>

namespace kelctl
{

void show(const result &done, const origin &from, bool tracer_installed);

// Of words that never became a command.
void show_wrong_line(const input_error &error, bool json);

// "node.toml:3:1: what is wrong", without a line end.
std::string text_of(const input_error &error);

} // namespace kelctl
