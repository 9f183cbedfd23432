// The lines before every view: what the recording lacks, and what it is of.
#pragma once

#include "kel-trace/operations/open_operations.h"
#include "kel-trace/reading/recording.h"
#include "notation/document.h"

#include <string>

namespace kel_trace
{

// Lines for people. What was lost comes first.
std::string preface_text(const recording &found, const cut_operations &cut);

// `cut` is null where operations are not looked at.
notation::document preface_document(const recording &found, const cut_operations *cut);

// "process 352 (kelctl), thread 353", with the host when there are several.
std::string thread_text(const recording &found, const thread_key &of);
notation::document thread_document(const recording &found, const thread_key &of);

// "node-1", or "unnamed host".
std::string host_text(const recording &found, uint32_t host);

} // namespace kel_trace
