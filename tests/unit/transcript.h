// What a thread of the test process did, as text: the closed calls it made and the trace records it fired, in order.
//
//     kel_core_ic_ebcom_interface_delete:
//       FN_ENTER EBCOM
//       API_CALL EBCOM kel_init_attach()
//       > kel_init_attach() = 3
//       ~ kei_util_init_rc_str_get(3)
//       init:EXCEPTION GENERAL code 3, kel_init_attach
//       FN_EXIT EBCOM
//
// A record is shown under the name of the function that its message begins with, with its event and domain ("init:"
// marks the provider of failed calls). ">" marks a closed call. An expected transcript marks one by "~" that is made
// for a record only. Locations are checked for their form and not shown; the calling thread's own number is shown as
// "tid=own".
//
// A test is written once and run twice, traced and untraced (the environment variable KEL_TEST_TRACING is "on" or
// "off"): untraced, only the calls marked ">" are expected.
#pragma once

#include <string>

namespace transcript
{

// Begins to listen to the trace records when this run is a traced one. From here on a misuse of GLib ends the process.
// Called once by main().
void begin();

bool traced();

bool is_main_thread();

// Adds a line to the calling thread's transcript.
void add(const std::string &line);

// The calling thread's transcript so far; begins a new one.
std::string take();

// Drops the calling thread's transcript so far.
void forget();

// The whole transcript of the n-th other thread that added anything, counted from 0.
std::string of_thread(size_t n);

// Compares the calling thread's transcript with the expected one, in the form above, and begins a new one.
void expect(const std::string &expected);

// Compares any transcript with an expected one.
void expect_equal(const std::string &actual, const std::string &expected);

// Waits until the n-th other thread has ended; a test failure when it does not end.
void wait_until_thread_ended(size_t n);

// Waits until the n-th other thread has ended, and joins it, as the library never does; a test failure when it does not
// end.
void wait_for_end_of_thread(size_t n);

} // namespace transcript
