// A result as people read it: what is shown on standard output, what went wrong on standard error.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/results/result.h"

#include <string>
#include <string_view>

namespace kelctl
{

// Writes the result, unless its parts were shown already. `from` is put in front of what went wrong.
void show(const result &done, const origin &from, const manner &shown, bool tracer_installed);

// Of words that never became a command. `hint` follows, a line or nothing.
void show_wrong_line(const input_error &error, std::string_view hint, bool json);

// "node.toml:3:1: what is wrong", without a line end.
std::string text_of(const input_error &error);

} // namespace kelctl
