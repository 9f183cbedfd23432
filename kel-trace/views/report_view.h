// Counts and durations, for people and as a document: host by host and in sum.
#pragma once

#include "kel-trace/operations/statistics.h"
#include "kel-trace/reading/recording.h"
#include "notation/document.h"
#include "terminal/terminal.h"

#include <string>

namespace kel_trace
{

// `found` names the hosts. Durations are in nanoseconds in the document, with units in the text.
std::string report_text(const statistics &all, const recording &found, const terminal::painter &paint);
notation::document report_document(const statistics &all, const recording &found);

} // namespace kel_trace
