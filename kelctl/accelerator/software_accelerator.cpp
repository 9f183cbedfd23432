// The software accelerator's control functions: of this process through weak references, or of another one over its
// socket.
#include "kelctl/accelerator/software_accelerator.h"

#include "kelctl/accelerator/remote_accelerator.h"
#include "notation/json.h"
#include "softnode/softnode.h"

#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>

// Weak: a program linked to a vendor's libraries has none of these, and their addresses are null.
extern "C" {
__attribute__((weak)) char *softnode_faults_add(const char *rules);
__attribute__((weak)) char *softnode_faults_add_text(const char *text, size_t size, uint32_t *line, uint32_t *column);
__attribute__((weak)) char *softnode_faults_json(void);
__attribute__((weak)) char *softnode_fault_functions_json(void);
__attribute__((weak)) void softnode_faults_clear(void);
__attribute__((weak)) uint32_t softnode_faults_release(void);
__attribute__((weak)) char *softnode_fault_sweep_watched(const softnode_scenario *scenario,
                                                         softnode_sweep_watcher *watcher);
__attribute__((weak)) char *softnode_graph_dot(void);
__attribute__((weak)) char *softnode_limits_json(void);
__attribute__((weak)) char *softnode_queues_json(void);
__attribute__((weak)) void softnode_reset(void);
__attribute__((weak)) char *softnode_snapshot_json(void);
__attribute__((weak)) char *softnode_switch_on(void);
__attribute__((weak)) int softnode_timing_settle(uint32_t milliseconds);
__attribute__((weak)) int32_t softnode_traffic_offer(const uint8_t mac[6], uint64_t frames, uint32_t octets_per_frame);
__attribute__((weak)) int32_t softnode_traffic_offer_one(const uint8_t mac[6], uint32_t octets, uint64_t identity);
__attribute__((weak)) void softnode_traffic_watch(softnode_frame_watcher *watcher, void *context);
__attribute__((weak)) int32_t softnode_traffic_send(uint32_t id, uint64_t frames, uint32_t octets_per_frame);
__attribute__((weak)) void softnode_time_advance(uint64_t nanoseconds);
__attribute__((weak)) uint64_t softnode_time(void);
}

namespace kelctl
{
namespace
{

// In another process; none: in this one. One for the process, as the accelerator in it is one: whoever asks need not
// know which it is.
std::optional<remote_accelerator> elsewhere;

// Takes a text of the accelerator's; none when it has none.
std::optional<std::string> taken(char *text)
{
    const std::unique_ptr<char, void (*)(void *)> owned(text, std::free);
    return owned ? std::optional<std::string>(owned.get()) : std::nullopt;
}

// The same of a document.
std::optional<notation::document> taken_document(char *text)
{
    const auto json = taken(text);
    return json ? std::optional(notation::read_json(*json)) : std::nullopt;
}

// What a function without arguments returns, a document. None where there is no such function.
std::optional<notation::document> document_of(std::string_view function, char *(*here)())
{
    if (elsewhere)
        return elsewhere->call(function);
    return here ? taken_document(here()) : std::nullopt;
}

std::optional<std::string> text_unless_null(const notation::document &value)
{
    return value.is_null() ? std::nullopt : std::optional(value.text());
}

offered met(int32_t code)
{
    return code == 0 ? offered::taken : offered::unknown;
}

// What the accelerator hands through itself: the scenario, and the last note, which it only borrows.
struct sweep_context {
    const sweep_scenario &scenario;
    const sweep_watcher &go_on;
    std::string note = {};
};

sweep_context &context_at(void *pointer)
{
    return *static_cast<sweep_context *>(pointer);
}

constexpr frame_fate fates_of_reasons[] = {frame_fate::too_long, frame_fate::no_room, frame_fate::no_way,
                                           frame_fate::no_queue};
static_assert(SOFTNODE_DROP_TOO_LONG == 0 && SOFTNODE_DROP_NO_QUEUE == std::size(fates_of_reasons) - 1);

} // namespace

void ask_accelerator_at(const std::string &path)
{
    elsewhere.emplace(path);
}

bool accelerator_elsewhere()
{
    return elsewhere.has_value();
}

bool on_software_accelerator()
{
    return elsewhere || softnode_reset;
}

std::optional<std::string> switch_on_accelerator()
{
    return softnode_switch_on && !elsewhere ? taken(softnode_switch_on()) : std::nullopt;
}

std::optional<notation::document> accelerator_limits()
{
    return document_of("limits", softnode_limits_json);
}

std::optional<notation::document> accelerator_snapshot()
{
    return document_of("snapshot", softnode_snapshot_json);
}

std::optional<notation::document> accelerator_queues()
{
    return document_of("queues", softnode_queues_json);
}

offered offer_frames(const mac_address &to, uint64_t frames, uint32_t octets)
{
    if (!elsewhere)
        return met(softnode_traffic_offer(to.octets.data(), frames, octets));
    return met(
        elsewhere->call("traffic_offer", {{"mac", to_text(to)}, {"frames", frames}, {"octets_per_frame", octets}})
            .number<int32_t>());
}

offered send_frames(uint32_t from, uint64_t frames, uint32_t octets)
{
    if (!elsewhere)
        return met(softnode_traffic_send(from, frames, octets));
    return met(elsewhere->call("traffic_send", {{"id", from}, {"frames", frames}, {"octets_per_frame", octets}})
                   .number<int32_t>());
}

offered offer_frame(const mac_address &to, uint32_t octets, uint64_t identity)
{
    return met(softnode_traffic_offer_one(to.octets.data(), octets, identity));
}

// The accelerator is C: it gets a function and this object, which therefore can be neither copied nor moved.
frame_watch::frame_watch(frame_watcher watcher) : watcher_(std::move(watcher))
{
    softnode_traffic_watch(
        [](void *context, const softnode_frame *frame) {
            static_cast<const frame_watch *>(context)->watcher_(
                {.identity = frame->identity,
                 .queue = frame->queue,
                 .entered = frame->entered,
                 .left = frame->left,
                 .fate = frame->fate == SOFTNODE_FRAME_SENT ? frame_fate::sent : fates_of_reasons[frame->reason]});
        },
        this);
}

frame_watch::~frame_watch()
{
    softnode_traffic_watch(nullptr, nullptr);
}

void advance_virtual_time(uint64_t by)
{
    if (elsewhere)
        elsewhere->call("time_advance", {{"nanoseconds", by}});
    else
        softnode_time_advance(by);
}

uint64_t virtual_time()
{
    return elsewhere ? elsewhere->call("time").number<uint64_t>() : softnode_time();
}

bool timing_settled(uint32_t milliseconds)
{
    return softnode_timing_settle && softnode_timing_settle(milliseconds) == 1;
}

std::optional<std::string> add_accelerator_faults(const std::string &rules)
{
    return elsewhere ? text_unless_null(elsewhere->call("faults_add", {{"rules", rules}}))
                     : taken(softnode_faults_add(rules.c_str()));
}

std::optional<problem> add_accelerator_faults_of(const std::string &text)
{
    position at;
    if (!elsewhere) {
        auto wrong = taken(softnode_faults_add_text(text.data(), text.size(), &at.line, &at.column));
        return wrong ? std::optional<problem>({at, std::move(*wrong)}) : std::nullopt;
    }
    const notation::document wrong = elsewhere->call("faults_add_text", {{"text", text}});
    if (wrong.is_null())
        return std::nullopt;
    at = {wrong.at("line").number<uint32_t>(), wrong.at("column").number<uint32_t>()};
    return problem{at, wrong.at("problem").text()};
}

notation::document accelerator_faults()
{
    return document_of("faults", softnode_faults_json).value_or(notation::document::array());
}

notation::document accelerator_fault_functions()
{
    return document_of("fault_functions", softnode_fault_functions_json).value_or(notation::document::array());
}

void clear_accelerator_faults()
{
    if (elsewhere)
        elsewhere->call("faults_clear");
    else
        softnode_faults_clear();
}

uint32_t release_accelerator_faults()
{
    return elsewhere ? elsewhere->call("faults_release").number<uint32_t>() : softnode_faults_release();
}

std::optional<std::string> accelerator_graph()
{
    if (elsewhere)
        return elsewhere->call("graph").text();
    return softnode_graph_dot ? taken(softnode_graph_dot()) : std::nullopt;
}

void reset_accelerator()
{
    if (elsewhere)
        elsewhere->call("reset");
    else
        softnode_reset();
}

// Functions of C for those of the scenario. They run in child processes, which have copies of everything here.
std::optional<notation::document> sweep_accelerator(const sweep_scenario &scenario, const sweep_watcher &go_on)
{
    sweep_context context = {scenario, go_on};
    const softnode_scenario handed = {
        .run = [](void *pointer) { return context_at(pointer).scenario.run(); },
        .clean_up = [](void *pointer) { context_at(pointer).scenario.clean_up(); },
        .describe =
            [](void *pointer) {
                sweep_context &swept = context_at(pointer);
                swept.note = notation::to_json(swept.scenario.note());
                return swept.note.c_str();
            },
        .context = &context,
        .time_limit = scenario.time_limit,
    };
    return taken_document(softnode_fault_sweep_watched(&handed, [](void *pointer, size_t done, size_t planned) {
        return context_at(pointer).go_on(done, planned) ? 1 : 0;
    }));
}

} // namespace kelctl
