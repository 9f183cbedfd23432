// One call of an exported function while it is under way: its line before it, what it met of the closed libraries, and
// its line with the result.
//
//     # thread 1: ebcom path add 02:00:00:02:00:01 --port RLU1P
//     fault add ork_ebcom_pcep_path_create:1=-4
//     expect 13 ebcom path add 02:00:00:02:00:01 --port RLU1P
#pragma once

#include "kel-record/preload/closed_functions.h"
#include "kel-record/preload/line.h"

#include <cstddef>
#include <cstdint>

namespace kel_record
{

// Whether a call that returns there is the program's own, and to be recorded: the library calls exported functions of
// its own, too, within a call and on its own thread.
bool is_programs_call(const void *returns_to);

// Lives on the stack of the wrapper: one at a time in a thread. It is some 10 KiB large.
class call
{
public:
    // `command`: the words before the arguments, which must outlive this.
    explicit call(const char *command);
    ~call();
    call(const call &) = delete;
    call &operator=(const call &) = delete;

    // Its line as it is now; the arguments are complete.
    void begin();

    // Its line with what the call returned, and before it a fault rule for each refusal within it.
    void end(uint32_t code);

    kel_record::line line;

private:
    friend void note_closed_call(size_t function, int64_t code, const void *returns_to);

    // A closed function returned this code from its `first` call within this one on, `times` times.
    struct refusal {
        size_t function;
        uint32_t first;
        uint32_t times;
        int64_t code;
    };

    void note(size_t function, int64_t code);

    static constexpr size_t most_refusals = 64;

    const int errno_before_; // the program's
    uint32_t counts_[closed::count] = {};
    refusal refusals_[most_refusals];
    size_t refusal_count_ = 0;
    bool more_refusals_ = false;
};

// The library called a closed function, by its index in closed_functions, and this is what it returned. A call from
// anywhere else is none of the library's.
void note_closed_call(size_t function, int64_t code, const void *returns_to);

} // namespace kel_record
