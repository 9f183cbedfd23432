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

// Called on the thread that fires the record, with the tracer's read lock held: it must not fire records itself.
using listener = std::function<void(const record &)>;

// Starts listening; all events are enabled from here on. One listener at a time.
// False when the tracer is not installed on this machine: then there are no records to be had.
bool listen(listener on_record);

// Stops listening. A record being fired on another thread may still arrive until this returns.
void stop_listening();

} // namespace trace
