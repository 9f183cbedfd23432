// Schedulers, shaped queues, the look-ups and the handle dump. A port's queue is kept by the port's number.
#include "model.h"
#include "scripted_platform.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace proof
{
namespace
{

constexpr const char *ebcom = "EBCOM";

// The ports of each group, in the order of their queues.
const std::vector<std::vector<int32_t>> ports_of_group = {
    {6, 7, 19, 20, 21, 22, 23, 24},   //
    {8, 9, 25, 26, 27, 28, 29, 30},   //
    {10, 11, 31, 32, 33, 34, 35, 36}, //
    {12, 13, 37, 38, 39, 40, 41, 42}, //
    {0},
};

std::optional<size_t> group_of(int32_t port)
{
    for (size_t group = 0; group < ports_of_group.size(); ++group)
        if (std::ranges::count(ports_of_group[group], port))
            return group;
    return std::nullopt;
}

mac_address address(const uint8_t *mac)
{
    mac_address result;
    std::copy_n(mac, result.size(), result.begin());
    return result;
}

uint64_t handle(void *scripted)
{
    return reinterpret_cast<uint64_t>(scripted);
}

} // namespace

// ---- The tree ----

uint32_t model::init_qos(const step &)
{
    return build_tree();
}

uint32_t model::build_tree()
{
    return operation_of("kel_ic_ebcom_init_qos", ebcom, [&] {
        tell_.event_device();
        uint64_t parent = 0;
        for (size_t level = 1; level <= 7; ++level) {
            tell_.require(create_scheduler(parent, levels_[level]), "create_scheduler");
            parent = levels_[level];
        }
        for (uint64_t &scheduler : schedulers_)
            tell_.require(create_scheduler(parent, scheduler), "create_scheduler");
    });
}

uint32_t model::create_scheduler(uint64_t parent, uint64_t &scheduler)
{
    return quiet("create_scheduler", ebcom, [&] {
        tell_.attach();
        octets params(88);
        const auto put = [&params](size_t offset, auto value) { memcpy(&params[offset], &value, sizeof value); };
        put(0, parent);
        put(12, uint32_t{3});
        put(16, uint32_t{11});
        put(20, uint32_t{7});
        put(24, uint32_t{3036});
        put(76, uint32_t{20});
        put(82, scripted::eth_dev_id);
        tell_.hand_over("ork_qos_scheduler_create", params);
        tell_.announce("ork_qos_scheduler_create(tsScriptId=0, shapingMode=3, schedulingMode=11, arbitrationMode=7, "
                       "serviceQuantum=3036, qosRates.peak.rate=0, qosRates.peak.bucketSize=0, "
                       "qosRates.sr_mr_u.sustain.rate=0, sr_mr_u.sustain.bucketSize=0, lengthCorrection=0, "
                       "outputIdSelect=0, bpDestIndex=0, timeScale=0)");
        tell_.driver_kit("ork_qos_scheduler_create(rootId=20, orkRootParentLevel=0, vsiEthDevId=7)",
                         "ork_qos_scheduler_create", "ork, parent " + pointer(parent) + ", 0");
        scheduler = handle(scripted::scheduler(++schedulers_made_));
        tell_.record("INFO", "ork_qos_scheduler_create handle: " + pointer(scheduler));
    });
}

uint32_t model::remove_scheduler(uint64_t scheduler)
{
    return quiet("remove_scheduler", ebcom, [&] {
        tell_.attach();
        tell_.driver_kit("ork_qos_scheduler_delete(scheduler_hdl=" + pointer(scheduler) + ")",
                         "ork_qos_scheduler_delete", "ork, " + pointer(scheduler));
    });
}

uint32_t model::deinit_qos(const step &)
{
    return release_tree();
}

// Queues, then the groups' schedulers, then the levels from the lowest up. What cannot be released is forgotten, too.
uint32_t model::release_tree()
{
    if (const int64_t code = tell_.unseen_call("kel_ic_ebcom_deinit_qos"))
        return static_cast<uint32_t>(code);
    return operation_of("kel_ic_ebcom_deinit_qos", ebcom, [&] {
        for (const int32_t port : {0, 12, 13, 37, 38, 39, 40, 41, 42, 10, 11, 31, 32, 33, 34, 35, 36,
                                   8, 9,  25, 26, 27, 28, 29, 30, 6,  7,  19, 20, 21, 22, 23, 24}) {
            if (!ports_[port].queue)
                continue;
            tell_.announce("kel_init_qos_queue_rem()");
            if (const int64_t code = tell_.call("kel_init_qos_queue_rem", pointer(ports_[port].queue)))
                tell_.report(static_cast<uint32_t>(code), "kel_init_qos_queue_rem");
        }
        std::vector<uint64_t> schedulers(schedulers_.begin(), schedulers_.end());
        schedulers.insert(schedulers.end(), levels_.rbegin(), levels_.rend() - 1);
        for (const uint64_t scheduler : schedulers)
            if (const uint32_t code = remove_scheduler(scheduler))
                tell_.report(code, "remove_scheduler");
        ports_.clear();
        schedulers_ = {};
        levels_ = {};
    });
}

// ---- Look-ups ----

uint32_t model::queue_handle_get(const step &step)
{
    uint64_t queue = 0xA5A5'A5A5'A5A5'A5A5;
    const uint32_t code = look_up("kel_ic_ebcom_queue_handle_get", step.path.dst_mac, true, queue);
    output(queue);
    return code;
}

uint32_t model::scheduler_handle_get(const step &step)
{
    uint64_t scheduler = 0xA5A5'A5A5'A5A5'A5A5;
    const uint32_t code = look_up("kel_ic_ebcom_scheduler_handle_get", step.path.dst_mac, false, scheduler);
    output(scheduler);
    return code;
}

uint32_t model::look_up(const char *operation, const uint8_t *mac, bool queue_wanted, uint64_t &found)
{
    if (const int64_t code = tell_.unseen_call(operation))
        return static_cast<uint32_t>(code);
    return operation_of(operation, ebcom, [&] {
        for (size_t group = 0; group < ports_of_group.size(); ++group)
            for (const int32_t port : ports_of_group[group])
                if (std::ranges::count(ports_[port].destinations, address(mac))) {
                    found = queue_wanted ? ports_[port].queue : schedulers_[group];
                    return;
                }
        const uint32_t code = quiet("find_handles_by_dst_mac", ebcom, [&] { tell_.refuse(4, "dst_mac"); });
        tell_.require(code, "find_handles_by_dst_mac");
    });
}

// ---- Shapers ----

uint32_t model::add_shaper(const step &step)
{
    octets record(24, soil);
    uint64_t queue = 0xA5A5'A5A5'A5A5'A5A5;
    const uint32_t code = shaper_added(step.path, queue);
    memcpy(record.data() + 16, &queue, sizeof queue);
    append(outputs_, record.data(), record.size());
    return code;
}

uint32_t model::remove_shaper(const step &step)
{
    const octets record(24, soil);
    append(outputs_, record.data(), record.size());
    return shaper_removed(step.path);
}

// What an unknown port gives, told by the index function and by the one that asked it.
uint32_t model::find_port(const char *who, int32_t port)
{
    return quiet(who, ebcom, [&] {
        if (group_of(port))
            return;
        tell_.require(quiet("get_scheduler_idx", ebcom, [&] { tell_.refuse(3, "iell_port"); }), "get_scheduler_idx");
    });
}

uint32_t model::shaper_added(const kel_ebcom_path_config &path, uint64_t &queue_written)
{
    return operation_of("kel_ic_ebcom_add_shaper", ebcom, [&] {
        tell_.require(find_port("ebcom_qos_handles_get", path.iell_port), "ebcom_qos_handles_get");
        queue_slot &slot = ports_[path.iell_port];
        if (slot.queue) {
            tell_.require(compare_queue(path, slot.queue), "check_if_queue_params_has_changed");
            tell_.require(store_destination(path), "store_dst_mac");
            queue_written = slot.queue;
            return;
        }
        uint64_t queue = 0;
        tell_.event_device();
        tell_.require(make_queue(path, schedulers_[*group_of(path.iell_port)], queue), "kel_init_qos_queue_add");
        slot.queue = queue;
        if (const uint32_t code = store_destination(path)) {
            tell_.report(code, "store_dst_mac");
            roll_back(queue); // told as a success, and the port goes on naming the queue
            return;
        }
        queue_written = queue;
    });
}

uint32_t model::make_queue(const kel_ebcom_path_config &path, uint64_t scheduler, uint64_t &queue)
{
    const bool shaped = path.shaping_enabled != 0;
    const uint32_t params[] = {1, shaped ? path.shaping_rate : 0, shaped ? path.buffer_threshold * 256U : 5'120'000U,
                               shaped ? path.burst_size : 0};
    octets record;
    append(record, params, sizeof params);
    tell_.hand_over("kel_init_qos_queue_add", record);
    tell_.announce("kel_init_qos_queue_add()");
    const int64_t code = tell_.call("kel_init_qos_queue_add", format("{%u, %u, %u, %u}, 5, %s, 7", params[0], params[1],
                                                                     params[2], params[3], pointer(scheduler).c_str()));
    if (!code)
        queue = handle(scripted::queue(++queues_made_));
    return static_cast<uint32_t>(code);
}

void model::roll_back(uint64_t queue)
{
    for (;;) {
        tell_.announce("kel_init_qos_queue_rem()");
        const int64_t code = tell_.call("kel_init_qos_queue_rem", pointer(queue));
        if (!code)
            return;
        tell_.report(static_cast<uint32_t>(code), "kel_init_qos_queue_rem");
    }
}

uint32_t model::compare_queue(const kel_ebcom_path_config &path, uint64_t queue)
{
    return quiet("check_if_queue_params_has_changed", ebcom, [&] {
        tell_.attach();
        tell_.hand_over("ork_qos_queue_get", octets(16));
        tell_.driver_kit("ork_qos_queue_get(" + pointer(queue) + ")", "ork_qos_queue_get", "ork, " + pointer(queue));
        tell_.record("LAB", format("Queue params: rate = %lu, bucketSize = %u, shapingMode = %u", queue_record_.rate,
                                   queue_record_.bucketSize, queue_record_.shapingMode));
        tell_.record("LAB", format("Config params: shaping_rate = %u, burst_size = %u, shaping_enabled = %u",
                                   path.shaping_rate, path.burst_size, path.shaping_enabled));
        const uint32_t mode = path.shaping_enabled == 0 ? 3 : 4;
        if (queue_record_.rate != uint64_t{path.shaping_rate} || queue_record_.bucketSize != path.burst_size ||
            queue_record_.shapingMode != mode)
            tell_.refuse(7, "Requested config is different than applied on already created queue");
    });
}

uint32_t model::store_destination(const kel_ebcom_path_config &path)
{
    return quiet("store_dst_mac", ebcom, [&] {
        if (tell_.unseen_call("malloc"))
            tell_.refuse(10, "malloc");
        ports_[path.iell_port].destinations.push_back(address(path.dst_mac));
    });
}

uint32_t model::remove_destination(const kel_ebcom_path_config &path)
{
    if (!group_of(path.iell_port))
        return find_port("remove_dst_mac", path.iell_port);
    return quiet("remove_dst_mac", ebcom, [&] {
        std::vector<mac_address> &destinations = ports_[path.iell_port].destinations;
        const auto found = std::ranges::find(destinations, address(path.dst_mac));
        if (found == destinations.end())
            tell_.refuse(4, "dst_mac");
        destinations.erase(found);
    });
}

uint32_t model::shaper_removed(const kel_ebcom_path_config &path)
{
    return operation_of("kel_ic_ebcom_remove_shaper", ebcom, [&] {
        tell_.require(remove_destination(path), "remove_dst_mac");
        queue_slot &slot = ports_[path.iell_port];
        if (slot.destinations.size() % 65536 != 0)
            return;
        tell_.announce("kel_init_qos_queue_rem()");
        tell_.require(static_cast<uint32_t>(tell_.call("kel_init_qos_queue_rem", pointer(slot.queue))),
                      "kel_init_qos_queue_rem");
        slot.queue = 0;
    });
}

// ---- The dump ----

bool model::dump_line(const std::string &line)
{
    std::string escaped;
    for (const char each : line)
        escaped += each == '\n' ? std::string("\\n") : std::string(1, each);
    const int64_t result = tell_.call("fprintf", escaped);
    if (result < 0)
        tell_.report_system("fprintf", result, ENOSPC);
    else
        dump_file_ += line;
    return result >= 0;
}

uint32_t model::qos_handle_dump(const step &)
{
    const std::string path = "/tmp/KEL_DUMP_EBCOM_QOS_HANDLE_FILENAME";
    const uint32_t result = quiet("kel_core_ic_ebcom_qos_handle_dump", ebcom, [&] {
        tell_.announce("fopen(" + path + ", w)");
        if (const int64_t number = tell_.call("fopen", path + ", w")) {
            if (number < 0)
                tell_.report_system("fopen(w)", number, static_cast<int>(number));
            throw failure{13};
        }
        dump_file_.clear();
        bool written = dump_line("\n------ EBCOM QOS scheduler and queue handle info------\n");
        for (size_t group = 0; group < 5 && written; ++group) {
            std::vector<std::string> lines = {"scheduler_handle=" + pointer(schedulers_[group])};
            for (size_t slot = 0; slot < 8; ++slot) {
                const bool used = slot < ports_of_group[group].size();
                lines.push_back("  queue_handle=" + pointer(used ? ports_[ports_of_group[group][slot]].queue : 0));
            }
            for (size_t n = 0; n < lines.size() && written; ++n) {
                tell_.record("LAB", lines[n]);
                written = dump_line(lines[n] + "\n");
            }
        }
        tell_.call("fclose", "");
        if (!written)
            throw failure{13};
    });
    append(outputs_, dump_file_.data(), dump_file_.size());
    return result;
}

} // namespace proof
