// The fault sweep of the software accelerator over a script, and the records of its report. sweep_view.h shows them.
// What a failing operation may leave is documented_leftovers.h.
//
//     const auto report = sweep(table, lines, 10'000, [](size_t done, size_t planned) { return !interrupted(); });
//     for (const sweep_run &run : report->runs)
//         show(run.function, run.call, name_of(run.came_out));
#pragma once

#include "kelctl/accelerator/software_accelerator.h"
#include "kelctl/jobs/script.h"
#include "kelctl/results/result.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelctl
{

// The outcome of a run, from good to bad: everything above left_as_documented fails the sweep.
enum class verdict { clean, left_as_documented, left, crashed, hung };

std::string_view name_of(verdict verdict); // for people
std::string_view key_of(verdict verdict);  // in documents

// One run of the script, with one closed call failing.
struct sweep_run {
    std::string function; // the faulted call; no run without a fault has one
    uint64_t call = 0;    // its number among the thread's calls of the function, from 1
    uint64_t thread = 0;  // 0: the script's own
    int64_t fault_code = 0;
    bool persistent = false; // all later calls of the function failed, too

    verdict came_out = verdict::clean;
    uint32_t line = 0;                      // that failed; 0: none did
    std::string operation;                  // the library's function that failed there
    std::optional<uint32_t> code;           // what it returned
    fields left = fields::array();          // objects that no take-down removed: kind and name of each
    std::vector<std::string> whys;          // the documented reasons, if all are documented
    std::vector<std::string> undo_failures; // take-down commands that failed, with their codes
};

// `undisturbed` is the run without faults: the others say something only if it succeeded.
struct sweep_report {
    sweep_run undisturbed;
    std::vector<sweep_run> runs;
    size_t planned = 0; // runs; more than there are when the sweep was ended
};

// Runs the script once without faults and then with each of its calls failing in turn, until `go_on` returns false.
// `time_limit`: milliseconds for one run. None if no child process can be created.
std::optional<sweep_report> sweep(const command_table &table, const std::vector<invocation> &lines, uint32_t time_limit,
                                  const sweep_watcher &go_on);

} // namespace kelctl
