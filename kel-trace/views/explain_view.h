// Failures with their causes, for people and as a document.
#pragma once

#include "kel-trace/operations/causes.h"
#include "kel-trace/reading/recording.h"
#include "notation/document.h"
#include "terminal/terminal.h"

#include <optional>
#include <string>

namespace kel_trace
{

// `last`: only so many, the newest. The text is not folded to a width: main.cpp does that.
std::string explain_text(const causes &all, const recording &found, std::optional<uint64_t> last,
                         const terminal::painter &paint);
notation::document explain_document(const causes &all, const recording &found, std::optional<uint64_t> last);

} // namespace kel_trace
