// An in-process listener on the nine events: it registers probes of its own with the tracer, so that a program sees
// its records as they are fired, without a session daemon. Nothing here is part of the product library.
#pragma once

#include <functional>

namespace trace
{

// One fired record. The texts are the tracer's arguments: they last for the call of the listener only.
struct record {
    const char *provider;
    const char *event;
    const char *location;
    const char *domain;
    const char *message;
};

// Called on the thread that fires the record, one record at a time: it must not fire records itself.
using listener = std::function<void(const record &)>;

// Starts listening, in place of an earlier listener; all events are enabled from here on, for good.
// False when the tracer is not installed on this machine: then there are no records to be had.
bool listen(listener on_record);

// Stops listening: no record arrives once this has returned.
void stop_listening();

} // namespace trace
