// What a test told the scripted platform, and what the platform's functions ask of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace scripted
{

// A call of a closed function: counted, and failed when the test said so.
std::optional<int64_t> next_result(const char *function);

// The same, and written into the transcript: "> function(arguments)", with " = result" when it fails. Gives the result.
int64_t logged_result(const char *function, const std::string &arguments);

// Keeps the octets of a record for record_of().
void keep_record(const char *function, const void *record, size_t size);

// The driver-kit handle as the transcript shows it: "ork" when it is the right one.
std::string ork_text(const void *handle);

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string text(const char *format, ...);

} // namespace scripted
