// A wrapper before each closed function: it passes the call on, and notes what came back. What is done with it is
// call.cpp.
#include "kel-record/preload/closed_functions.h"

#include "kel-record/preload/call.h"
#include "kel-record/preload/entry.h"
#include "platform/kel_fmt.h"
#include "platform/kel_init.h"
#include "platform/ork.h"
#include "platform/qol_ng.h"
#include "platform/vorn_tu.h"

namespace kel_record
{
namespace
{

template <size_t Index, typename Function> struct wrapper;

template <size_t Index, typename Code, typename... Parameters> struct wrapper<Index, Code(Parameters...)> {
    static Code pass_on(Parameters... parameters)
    {
        static constinit next_function<Code(Parameters...)> next(closed_functions[Index].name);
        const Code code = next.get()(parameters...);
        note_closed_call(Index, code, __builtin_return_address(0));
        return code;
    }
};

} // namespace

#define KEL_ROW(function, both) INTERPOSE(function, &wrapper<closed::function, decltype(::function)>::pass_on);
KEL_CLOSED_FUNCTIONS(KEL_ROW)
#undef KEL_ROW

} // namespace kel_record
