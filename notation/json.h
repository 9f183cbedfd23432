// Documents as JSON. The one place that knows a JSON library. Octets in messages between processes are
// kelctl/remote/octets.h.
//
//     to_json({{"port", 6}, {"name", "RLU1P"}})       {"port":6,"name":"RLU1P"}
//     read_json("[1, 2]")[1].number<int>()            2
#pragma once

#include "notation/document.h"

#include <optional>
#include <string>
#include <string_view>

namespace notation
{

// On one line, or with every value on a line of its own, indented by so many blanks a level. What is not UTF-8, as
// texts of callers may be, is replaced.
std::string to_json(const document &document);
std::string to_json(const document &document, int indent);

// Throws document_error for what is no JSON, or is nested so deeply that the stack might not take it.
document read_json(std::string_view text);

// The same, without an exception.
std::optional<document> try_read_json(std::string_view text);

} // namespace notation
