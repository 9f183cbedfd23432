// kel-record-documents: prints the manual page, which is made from the program's table. For the build.
#include "kel-record/language/request.h"
#include "options/documents/manual.h"

namespace
{

constexpr std::string_view description =
    R"(kel-record runs a control process and writes each of its calls into libkel-core-ic to a file, as the commands of kelctl
that make the same calls. "kelctl run FILE" repeats them, on a node or over the software accelerator, and fails at the first
call that returns another code than the recorded one.

A call is a comment when it begins, "# thread 1: ebcom start", and a command when it returns, "expect 0 ebcom start": the call
that a process crashed in is the last line. Before the command, "fault add" lines tell which calls of the closed libraries
failed within it, so that the software accelerator fails at the same place in the same way; without them it does what it does
by itself. Failures on the library's own thread are comments: no result depends on them. Values that kelctl refuses are
written with --raw. A handle that the node gave out is its own name, with "--as", wherever a later call takes it. An "mpid"
line sets the own MP id.

The process does not notice: results, trace records and the calls of the closed libraries are the same. What happens to
the file is its affair alone: when it cannot be written any more, standard error says so once, and the process goes on.

A further process that makes calls, such as a child, writes FILE.PID. A program that is linked statically, that opens the
library with dlopen(3), or that changes its user id when it is executed is not recorded.)";

constexpr options::meaning environment[] = {
    {"LD_PRELOAD", "kel-record puts its library before those that are named there"},
    {"KEL_RECORD_FILE", "set for the program: the file"},
};

} // namespace

int main()
{
    return options::print_manual(
        kel_record::program,
        {.about = "writes the calls of a control process as a script",
         .description = description,
         .environment = environment,
         .example = "kel-record --output field.kel -- ./control-process --node 5\nkelctl run field.kel",
         .see_also = "kelctl(1), kel-trace(1), ld.so(8)"});
}
