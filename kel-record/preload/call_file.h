// The file that calls are written to, KEL_RECORD_FILE, by the first process that makes a call; further processes write
// FILE.PID. Lines are appended whole. Whatever happens to the file, the program notices nothing: a failure is reported
// once on standard error and ends the recording.
#pragma once

#include <sys/uio.h>

namespace kel_record
{

// Whether this process is to be recorded.
bool recording();

// Appends lines, in one write.
void append(const iovec *parts, int count);

// Appends one text of whole lines.
void append(const char *lines);

} // namespace kel_record
