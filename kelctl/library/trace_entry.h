// One trace record of the library, as text.
#pragma once

#include <string>

namespace kelctl
{

struct trace_entry {
    std::string event;
    std::string domain;
    std::string message;
    std::string location;
};

// One line, without its end.
std::string to_text(const trace_entry &entry);

// The same with its end.
std::string text_line(const trace_entry &entry);

} // namespace kelctl
