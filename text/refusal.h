// What the message of a trace record says: which function speaks, and what refused, with the code where it is written.
//
//     kel_ic_ebcom_add_shaper(): limit reached, kel_init_qos_queue_add            the companion library and most others
//     create_scheduler(): 0xfffffff9 - internal error, ork_qos_scheduler_create   the driver kit: with its own code
//     timestamp_thread(): vorn_tu_init returned NOTAVAIL                          the timing unit: its code as a name
//     dump_line(): fprintf => rc=-1, errno=No space left on device(28)            the system
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace text
{

// The message in its two parts; empty ones when it has not this form. An entry or exit tells nothing.
struct message_parts {
    std::string_view function;
    std::string_view detail;
};
message_parts parts_of(std::string_view message);

// Whose refusal it is when the library did not accept something.
inline constexpr std::string_view library_itself = "library itself";

// Texts are parts of the message.
struct refusal {
    std::string_view by;         // "driver kit", "companion library", ... or library_itself
    std::string_view what;       // the function that refused, or what the library itself did not accept; may be empty
    std::optional<int64_t> code; // the refusing library's own; none when the message does not tell
    std::string_view text;
};

// None when the message names nothing that refused.
std::optional<refusal> refusal_in(std::string_view detail);

} // namespace text
