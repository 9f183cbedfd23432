// One function for each kind of object. The accelerator cuts some values to the bits that it has: what was asked is cut
// in the same way before it is compared.
#include "kelctl/change/discrepancies.h"

#include "kelctl/node/read_back.h"
#include "kelctl/values/ic_port.h"
#include "kelctl/values/mp_id.h"
#include "kelctl/values/quantity_messages.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view missing = "the accelerator does not hold it";
constexpr std::string_view beyond = "the accelerator holds it, but this process knows of no such one";

// The numbers of an unshaped queue are the library's, whatever was asked for: 0 here.
struct shape {
    bool shaped = false;
    uint32_t rate = 0; // kbit/s
    uint32_t burst = 0;
    uint32_t threshold = 0;

    bool operator==(const shape &) const = default;
};

std::string text_of(const shape &one)
{
    if (!one.shaped)
        return "an unshaped one";
    return fmt::format("{}, burst {}, threshold {}", quantity_text(one.rate, rate_units),
                       quantity_text(one.burst, size_units), quantity_text(one.threshold, size_units));
}

shape shape_of(const snapshot::queue &queue)
{
    return queue.shaped ? shape{true, queue.rate, queue.burst, queue.threshold} : shape();
}

shape shape_of(const arguments &given)
{
    if (!given.has("--rate") || (given.has("--shaping") && given.number<uint8_t>("--shaping") == 0))
        return {};
    return {true, given.number<uint32_t>("--rate"), given.number<uint32_t>("--burst"),
            given.number<uint32_t>("--threshold")};
}

class comparison
{
public:
    comparison(const node_model &model, const snapshot &node, const port_knowledge &ports)
        : model_(model), node_(node), ports_(ports)
    {
    }

    std::vector<discrepancy> compare()
    {
        compare_service();
        compare_queues();
        compare_paths();
        compare_pceps();
        compare_groups();
        return std::move(found_);
    }

private:
    void report(const object_key &key, std::string_view what)
    {
        found_.push_back({key.kind, name_of(key), std::string(what)});
    }

    void report_presence(const object_key &key, bool asked, bool held)
    {
        if (asked != held)
            report(key, asked ? missing : beyond);
    }

    std::vector<const node_object *> all(object_kind kind) const
    {
        std::vector<const node_object *> found;
        for (const node_object &one : model_)
            if (one.key.kind == kind)
                found.push_back(&one);
        return found;
    }

    // To the accelerator the service is its scheduler tree: it does not know whether the library started it as a whole.
    void compare_service()
    {
        if (const auto set = all(object_kind::parameters); !set.empty())
            compare_parameters(set.front()->asked.given);
        report_presence({.kind = object_kind::interface}, !all(object_kind::interface).empty(),
                        node_.interface.has_value());
        const bool started = !all(object_kind::ebcom_service).empty() || !all(object_kind::scheduler_tree).empty();
        report_presence({.kind = object_kind::scheduler_tree}, started, !node_.schedulers.empty());
    }

    void compare_parameters(const arguments &given)
    {
        const auto &settings = given.get<std::vector<uint32_t>>("--settings");
        const bool same = node_.globals && node_.globals->mtu == given.number<uint16_t>("--mtu") &&
                          node_.globals->ether_type == given.number<uint16_t>("--ether-type") &&
                          std::ranges::equal(node_.globals->settings, settings,
                                             [](uint8_t held, uint32_t asked) { return held == (asked & 0xF); });
        if (!same)
            report({.kind = object_kind::parameters}, "the accelerator holds other ones");
    }

    // The first path or shaper of a port has made its queue.
    void compare_queues()
    {
        std::map<int64_t, shape> asked;
        for (const node_object &one : model_)
            if (uses_queue(one.key))
                asked.try_emplace(one.key.number, shape_of(one.asked.given));
        for (const snapshot::queue &queue : node_.queues)
            compare_queue(queue, asked);
        for (const auto &[port, shape] : asked)
            report({.kind = object_kind::queue, .number = port}, missing);
    }

    // What was asked for is taken out once it is found.
    void compare_queue(const snapshot::queue &queue, std::map<int64_t, shape> &asked)
    {
        const auto port = ports_.port_of_queue.find(queue.self);
        const auto found = port == ports_.port_of_queue.end() ? asked.end() : asked.find(port->second);
        if (found == asked.end())
            return found_.push_back({object_kind::queue, fmt::format("queue 0x{:x}", queue.self), std::string(beyond)});
        if (const shape held = shape_of(queue); held != found->second)
            report({.kind = object_kind::queue, .number = found->first},
                   fmt::format("the accelerator holds {}, this process asked for {}", text_of(held),
                               text_of(found->second)));
        asked.erase(found);
    }

    // The accelerator has one path for each address, which leads through the port that was added last.
    void compare_paths()
    {
        std::map<mac_address, int64_t> asked;
        for (const node_object *one : all(object_kind::path))
            asked[one->key.mac] = one->key.number;
        for (const snapshot::path &path : node_.paths) {
            const auto found = asked.find(path.mac);
            if (found == asked.end()) {
                found_.push_back({object_kind::path, "path to " + to_text(path.mac), std::string(beyond)});
                continue;
            }
            compare_path({.kind = object_kind::path, .number = found->second, .mac = path.mac}, path.queue);
            asked.erase(found);
        }
        for (const auto &[mac, port] : asked)
            report({.kind = object_kind::path, .number = port, .mac = mac}, missing);
    }

    void compare_path(const object_key &key, handle queue)
    {
        const auto port = ports_.port_of_queue.find(queue);
        if (queue == 0)
            report(key, "its queue is gone");
        else if (port == ports_.port_of_queue.end())
            report(key, "the accelerator sends through a queue of no known port");
        else if (port->second != key.number)
            report(key, fmt::format("the accelerator sends through {}", port_text(port->second)));
    }

    // What was asked for and is found is taken out of the list; what is left over at the end is missing.
    void compare_pceps()
    {
        std::map<int64_t, const node_object *> asked;
        for (const node_object *one : all(object_kind::pcep))
            asked[one->key.number] = one;
        for (const snapshot::pcep &pcep : node_.pceps)
            if (const auto found = asked.find(pcep.id); found != asked.end()) {
                compare_pcep(*found->second, pcep);
                asked.erase(found);
            } else {
                report({.kind = object_kind::pcep, .number = pcep.id}, beyond);
            }
        for (const auto &[id, object] : asked)
            report(object->key, missing);
    }

    // The library binds a PCEP by its local address alone, so whether it should be bound follows from that.
    void compare_pcep(const node_object &object, const snapshot::pcep &held)
    {
        const arguments &asked = object.asked.given;
        const bool same = held.remote_id == asked.number<uint32_t>("--remote-id") &&
                          held.local_mac == asked.mac("--local") && held.remote_mac == asked.mac("--remote") &&
                          held.vlan == (asked.number<uint32_t>("--vlan") & 0xFFF) &&
                          held.priority == (asked.number<uint32_t>("--priority") & 7);
        if (!same)
            report(object.key, "the accelerator holds another one");
        else if (held.bound != (location_of(held.local_mac, own_mp_id()) == KEL_LOCATION_HSFP))
            report(object.key, held.bound ? "it is bound" : "it is not bound to the EHSFP");
    }

    // A PCEP may be a member more than once, so members are compared with their counts and without their order.
    void compare_groups()
    {
        std::map<int64_t, std::multiset<int64_t>> asked;
        for (const node_object *one : all(object_kind::group))
            asked[one->key.number];
        for (const node_object *one : all(object_kind::member))
            asked[one->key.number].insert(one->key.pcep);
        for (const snapshot::group &group : node_.groups) {
            const object_key key = {.kind = object_kind::group, .number = group.id};
            const auto found = asked.find(group.id);
            if (found == asked.end()) {
                report(key, beyond);
                continue;
            }
            const std::multiset<int64_t> members(group.members.begin(), group.members.end());
            if (members != found->second)
                report(key, fmt::format("the accelerator holds the members {}",
                                        members.empty() ? "none" : text::joined(members, ", ")));
            asked.erase(found);
        }
        for (const auto &[id, members] : asked)
            report({.kind = object_kind::group, .number = id}, missing);
    }

    const node_model &model_;
    const snapshot &node_;
    const port_knowledge &ports_;
    std::vector<discrepancy> found_;
};

} // namespace

std::optional<std::vector<discrepancy>> discrepancies(const node_model &model, const session &session)
{
    const auto node = current_snapshot();
    if (!node)
        return std::nullopt;
    return comparison(model, *node, ports_of(*node, session.paths)).compare();
}

std::string text_of(const discrepancy &one)
{
    return fmt::format("{}: {}", one.object, one.what);
}

} // namespace kelctl
