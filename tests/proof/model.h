// What the library is expected to do, as an account of steps over maps and counters. Written from what the operations
// promise, without a look at how they are made: no source, header or table of the library's own is used for it but the
// declarations of records and operations.
//
// A model can be copied: a dry run of a step on a copy tells which outside calls the step will make.
#pragma once

#include "account.h"

#include <array>
#include <optional>

namespace proof
{

using mac_address = std::array<uint8_t, 6>;

// What of a step can be seen from outside, by the one who ran it.
struct outcome {
    uint32_t result = 0;
    octets outputs; // everything the caller handed over to be written, filled with `soil` before, in argument order
    std::string transcript;
    std::map<std::string, std::vector<octets>> records;
    std::map<size_t, std::string> threads; // transcripts of the timestamp threads that ran in the step, by their number
};

constexpr uint8_t soil = 0xA5;
constexpr uint32_t text_buffer_size = 512;

class model
{
public:
    explicit model(bool traced) : tell_(traced), traced_(traced)
    {
    }

    outcome perform(const step &step);

    // The outside calls that the latest step made, in order: on the calling thread, and on a timestamp thread.
    const std::vector<made_call> &calls() const
    {
        return tell_.calls();
    }
    std::vector<made_call> thread_calls() const;

    // How many timestamp threads wait for an event, and which have ended.
    uint32_t waiting_threads() const;
    bool thread_ended(size_t n) const;

    // Steps that take a library of any history back to where nothing stands, as far as it forgets: it never forgets its
    // table, its MP, and that there was a thread.
    script way_back() const;

    // A script must not go where the operations promise nothing.
    bool allows(const step &step) const;

private:
    struct queue_slot {
        uint64_t queue = 0;
        std::vector<mac_address> destinations;
    };

    struct pcep_entry {
        uint32_t id = 0;
        uint64_t handle = 0;
        uint32_t location = 0;
        uint32_t members = 0;
    };

    struct timestamp_thread {
        account tell;
        bool ended = false;
        std::string shown; // before the latest step
        bool over = false; // before the latest step
    };

    // ---- The EBCOM service ----
    uint32_t ebcom_start(const step &);
    uint32_t ebcom_stop(const step &);
    uint32_t convert_cycles(const step &);
    uint32_t global_param_set(const step &);
    uint32_t capabilities_get(const step &);
    uint32_t interface_create(const step &);
    uint32_t interface_delete(const step &);
    uint32_t path_add(const step &);
    uint32_t path_rem(const step &);
    uint32_t port_to_mac_chan(const step &);

    void start_thread(const step &);
    void run_thread(timestamp_thread &thread, bool first, const vorn_tu_event &event);
    void update_offset(account &tell);
    static uint32_t convert(account &tell, const vorn_tu_nputimeoffset &reading, int64_t &offset);
    uint32_t path_attributes(const kel_ebcom_path_config &path, octets &record, uint32_t &location);
    uint32_t mac_channel(int32_t port);
    void announce_path(const kel_ebcom_path_config &path);
    std::string path_call(const char *function, const kel_ebcom_path_config &path, const octets &record,
                          uint32_t location) const;

    // ---- QoS ----
    uint32_t queue_handle_get(const step &);
    uint32_t scheduler_handle_get(const step &);
    uint32_t init_qos(const step &);
    uint32_t deinit_qos(const step &);
    uint32_t add_shaper(const step &);
    uint32_t remove_shaper(const step &);
    uint32_t qos_handle_dump(const step &);

    uint32_t look_up(const char *operation, const uint8_t *mac, bool queue_wanted, uint64_t &handle);
    uint32_t build_tree();
    uint32_t release_tree();
    uint32_t create_scheduler(uint64_t parent, uint64_t &scheduler);
    uint32_t remove_scheduler(uint64_t scheduler);
    uint32_t shaper_added(const kel_ebcom_path_config &path, uint64_t &queue_written);
    uint32_t shaper_removed(const kel_ebcom_path_config &path);
    uint32_t compare_queue(const kel_ebcom_path_config &path, uint64_t queue);
    uint32_t find_port(const char *who, int32_t port);
    uint32_t store_destination(const kel_ebcom_path_config &path);
    uint32_t remove_destination(const kel_ebcom_path_config &path);
    uint32_t make_queue(const kel_ebcom_path_config &path, uint64_t scheduler, uint64_t &queue);
    void roll_back(uint64_t queue);
    bool dump_line(const std::string &line);

    // ---- Statistics ----
    uint32_t global_stats(const step &);
    uint32_t global_text(const step &);
    uint32_t queue_stats(const step &);
    uint32_t queue_text(const step &);
    uint32_t queue_text_2(const step &);
    uint32_t set_burst_stats(const step &);
    uint32_t pcep_driver_kit_stats(const step &);
    uint32_t pcep_compact_stats(const step &);
    uint32_t pcep_text(const step &);

    uint32_t read_global(octets &record);
    uint32_t read_queue(const uint8_t *mac, octets &record);
    uint32_t read_pcep(uint32_t id, octets &record);
    uint32_t burst_step();
    uint32_t queue_lines(const step &, const char *operation, const char *title, bool second_layout);
    uint32_t format_call(octets &text, const step &, const char *function, const std::string &arguments,
                         const std::string &mark);
    void end_text(octets &text, const step &);

    // ---- PCEPs ----
    uint32_t classify(const step &);
    uint32_t pcep_start(const step &);
    uint32_t pcep_stop(const step &);
    uint32_t pcep_dump(const step &);
    uint32_t multicast_hook(const step &);
    uint32_t pcep_add(const step &);
    uint32_t pcep_rem(const step &);
    uint32_t group_add(const step &);
    uint32_t group_rem(const step &);
    uint32_t member_add(const step &);
    uint32_t member_rem(const step &);

    uint32_t classified(const uint8_t *mac, uint32_t &location, uint32_t &type);
    uint8_t own_mp_id();
    void bind(const char *function, const char *announced, uint32_t id);
    void check_members(const step &);
    const pcep_entry &entry_of(uint32_t id) const;
    const char *ork() const;

    // ---- The rest ----
    uint32_t tracepoint(const step &);
    uint32_t abort_requested(const step &);
    uint32_t timing(const step &);
    void fail_wait(timestamp_thread &thread, int32_t code);
    uint32_t surroundings(const step &);

    // FN_ENTER, the work, FN_EXIT, and the code that the work ended with.
    template <typename Work> uint32_t operation_of(const char *name, const char *domain, Work work)
    {
        const account::speaker speaker(tell_, name, domain);
        tell_.record("FN_ENTER");
        const uint32_t code = ended(work);
        tell_.record("FN_EXIT");
        return code;
    }

    // The same without the records.
    template <typename Work> uint32_t quiet(const char *name, const char *domain, Work work)
    {
        const account::speaker speaker(tell_, name, domain);
        return ended(work);
    }

    template <typename Work> static uint32_t ended(Work work)
    {
        try {
            work();
        } catch (const failure &failed) {
            return failed.code;
        }
        return 0;
    }

    template <typename... Values> void output(const Values &...values)
    {
        (append(outputs_, &values, sizeof values), ...);
    }
    static void append(octets &to, const void *from, size_t size);

    struct dispatch;
    static const dispatch operations[operation_count];

    account tell_;
    bool traced_;
    octets outputs_;

    // ---- What the library keeps ----
    bool table_ = false;
    std::map<std::string, uint32_t> counts_;
    bool thread_known_ = false;
    std::vector<timestamp_thread> threads_;
    std::array<uint64_t, 8> levels_{};
    std::array<uint64_t, 5> schedulers_{};
    std::map<int32_t, queue_slot> ports_;
    bool attached_ = false;
    std::map<uint32_t, pcep_entry> pceps_;
    uint8_t groups_ = 0;
    uint8_t mp_id_ = 0;

    // ---- What stands around it ----
    uint32_t schedulers_made_ = 0;
    uint32_t queues_made_ = 0;
    uint32_t pceps_made_ = 0;
    uint32_t groups_made_ = 0;
    std::string dump_file_;
    ork_qos_queue queue_record_ = {0, 0, 3};
    vorn_tu_nputimeoffset reading_ = {10, 250000};
    std::optional<std::string> mpid_;
    std::optional<uint32_t> location_;
    std::vector<fault> thread_faults_;
};

struct model::dispatch {
    operation what;
    uint32_t (model::*perform)(const step &);
};

// As the C library prints a pointer.
std::string pointer(uint64_t handle);

const char *location_name(uint32_t location);

// As the scripted platform shows a handle of its own: "pcep 3", "group 1", "refused".
std::string pcep_handle_text(uint64_t handle);

// What the scripted platform fills a record with: 1, 2, 3 and so on.
octets counted(size_t size);

} // namespace proof
