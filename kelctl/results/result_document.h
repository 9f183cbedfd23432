// A result as programs read it: one JSON document for each command. Its schema is docs/kelctl-json.md: keep the two
// together. As text it is result_view.h; for another process of kelctl, remote/result_message.h.
#pragma once

#include "kelctl/language/command.h"
#include "kelctl/results/result.h"

#include <string>

namespace kelctl
{

// The document of a command. Without a tracer `records` of a failure are null: there are none, whatever happened.
fields document_of(const result &done, const invocation &asked, const origin &from, bool tracer_installed);

// For a line that is no command.
fields document_of(const input_error &error);

// Parts of documents: a failed operation without its trace records, and one such record.
fields failure_fields(const failure &failed);
fields record_fields(const trace_entry &entry);

// The trace record, as --trace prints it where results are JSON.
std::string json_line(const trace_entry &entry);

// A document as one line with its end. Octets that are not UTF-8 are replaced.
std::string line_of(const fields &document);

} // namespace kelctl
