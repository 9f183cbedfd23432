// What is said over a socket: lines of JSON. The server speaks first:
//
//     {"protocol":"softnode","version":1}
//
// After that each line of the client is a request, and each gets one line as its answer, in the same order. A server that
// refuses a request or the client answers {"error":"why"}.
#pragma once

#include "notation/document.h"

#include <optional>
#include <string>
#include <string_view>

namespace sockets
{

struct protocol {
    std::string_view name;
    unsigned version; // both sides have the same
};

// The first line of a server, without its end. `more` has further members: who serves here.
std::string greeting(const protocol &spoken, const notation::document &more);

// What keeps a client of this protocol from asking a server that greets so; none: nothing.
std::optional<std::string> objection_to(const notation::document &greeting, const protocol &spoken);

// {"error":"why"}
std::string error_line(std::string_view why);

} // namespace sockets
