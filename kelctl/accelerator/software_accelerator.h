// The software accelerator's own services, where the process runs on it, or those of another process that runs on it.
// The only place that knows softnode.h, and that its documents come as JSON.
//
// On a vendor's platform there are none of them. Commands that need them say so in their row of the table, and are not
// carried out there; whatever else asks gets nothing.
#pragma once

#include "kelctl/values/mac_address.h"
#include "kelctl/values/problem.h"
#include "notation/document.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kelctl
{

// From now on everything here is asked of the process that serves this socket, and throws std::runtime_error when it
// does not answer. Frames with an identity, what becomes of them, and sweeps stay with this process.
void ask_accelerator_at(const std::string &path);
bool accelerator_elsewhere();

// Whether the process that is asked runs on it.
bool on_software_accelerator();

// What is wrong with the fault rules of the environment: the accelerator ends the process when it is used.
std::optional<std::string> switch_on_accelerator();

// How many objects of each kind the node has room for.
std::optional<notation::document> accelerator_limits();

// Everything that the node holds.
std::optional<notation::document> accelerator_snapshot();

// Its queues alone, which are few however many paths there are.
std::optional<notation::document> accelerator_queues();

// Waits until the timestamp thread has no work left, or has ended. False when that cannot be determined
// here, or did not come within the time.
bool timing_settled(uint32_t milliseconds);

// ---- Only on the software accelerator ----

// What is wrong with the rules, of a command or of a file's text; then none was added.
std::optional<std::string> add_accelerator_faults(const std::string &rules);
std::optional<problem> add_accelerator_faults_of(const std::string &text);

notation::document accelerator_faults();          // a list of rules with hits
notation::document accelerator_fault_functions(); // a list of what a rule may name
void clear_accelerator_faults();
uint32_t release_accelerator_faults(); // how many calls were blocked

// A picture of the node for Graphviz. None where the accelerator draws none.
std::optional<std::string> accelerator_graph();

// Removes every object and every fault rule, and sets the time to 0. What the library and the session know is theirs to
// forget.
void reset_accelerator();

// Gets how many runs of a sweep are complete, and how many are planned.
using sweep_watcher = std::function<bool(size_t done, size_t planned)>;

// A run of a fault sweep and what follows it, both in a child process. `note`, an object, is a
// part of the report.
struct sweep_scenario {
    std::function<uint32_t()> run;
    std::function<void()> clean_up;
    std::function<notation::document()> note;
    uint32_t time_limit; // milliseconds for one run
};

// The sweep's report; none if no child process can be created. `go_on` is called before each run:
// false ends the sweep.
std::optional<notation::document> sweep_accelerator(const sweep_scenario &scenario, const sweep_watcher &go_on);

// What an offering met: the accelerator knows the destination or sender, or it does not. Whether frames are dropped
// later shows in the counters of their queue.
enum class offered { taken, unknown };

// Offers frames at this instant: for a destination, or of a PCEP or a multicast group.
offered offer_frames(const mac_address &to, uint64_t frames, uint32_t octets);
offered send_frames(uint32_t from, uint64_t frames, uint32_t octets);

// What happened to a frame: it left, it was dropped for a reason, or it never left.
enum class frame_fate : uint8_t { sent, too_long, no_room, no_way, no_queue, never_left };

struct frame_report {
    uint64_t identity = 0;
    uint64_t queue = 0; // its handle; 0: no path leads to the frame's destination
    uint64_t entered = 0;
    uint64_t left = 0; // or was dropped
    frame_fate fate = frame_fate::sent;
};

// Offers one frame at this instant, with an identity other than 0.
offered offer_frame(const mac_address &to, uint32_t octets, uint64_t identity);

// Gets a report of each frame with an identity that leaves or is dropped, in order of time. It must not call the
// accelerator.
using frame_watcher = std::function<void(const frame_report &)>;

// One at a time.
class frame_watch
{
public:
    explicit frame_watch(frame_watcher watcher);
    ~frame_watch();
    frame_watch(const frame_watch &) = delete;
    frame_watch &operator=(const frame_watch &) = delete;

private:
    frame_watcher watcher_;
};

// Nanoseconds.
void advance_virtual_time(uint64_t by);
uint64_t virtual_time();

} // namespace kelctl
