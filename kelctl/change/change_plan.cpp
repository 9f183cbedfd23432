// What goes and what comes is marked first, then put into order. Marks are indexes into the two models, so objects are
// neither copied nor looked for again.
#include "kelctl/change/change_plan.h"

#include "kelctl/change/difference.h"
#include "kelctl/session/undo.h"

#include <fmt/core.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t most_references = 65'535; // the library counts those of a queue in 16 bits

using indexes = std::vector<size_t>;

// One of the two nodes, and which of its objects are touched.
struct side {
    explicit side(const node_model &its_model) : model(its_model), touched(its_model.size(), false)
    {
        for (size_t i = 0; i < model.size(); ++i) {
            const object_key &key = model[i].key;
            by_key[key].push_back(i);
            if (uses_queue(key))
                on_port[key.number].push_back(i);
            if (key.kind == object_kind::path)
                paths_to[key.mac].push_back(i);
        }
    }

    std::span<const size_t> all(const object_key &key) const
    {
        const auto found = by_key.find(key);
        return found == by_key.end() ? std::span<const size_t>() : std::span(found->second);
    }

    void touch(std::span<const size_t> these)
    {
        for (const size_t i : these)
            touched[i] = true;
    }

    const node_model &model;
    std::vector<bool> touched; // of what exists: it is removed; of what is wanted: it is made
    std::map<object_key, indexes> by_key;
    std::map<int64_t, indexes> on_port;
    std::map<mac_address, indexes> paths_to;
};

class planner
{
public:
    planner(const node_model &now, const node_model &wanted, const command_table &table, std::optional<size_t> room)
        : now_(now), wanted_(wanted), table_(table), first_(now.size(), false)
    {
        std::set<mac_address> destinations;
        for (const side *each : {&now_, &wanted_})
            for (const auto &[mac, paths] : each->paths_to)
                destinations.insert(mac);
        crowded_ = room && destinations.size() > *room;
    }

    // Each step of the marking relies on those before it: a PCEP's members follow the PCEP, and which path to a
    // destination would be the last one follows from all paths that are added.
    change_plan plan() &&
    {
        mark_ports();
        for (const auto &[key, objects] : now_.by_key)
            uses_queue(key) ? mark_paths(key) : mark_object(key);
        for (const auto &[key, objects] : wanted_.by_key)
            if (now_.all(key).empty())
                wanted_.touch(objects);
        mark_members_of_new_pceps();
        mark_last_paths();
        put_in_order();
        note_interruptions();
        return std::move(plan_);
    }

private:
    // Those whose queue has to be made anew, and those that could not hold the paths of both nodes for a moment. Their
    // paths are all removed first, so that the queue goes.
    void mark_ports()
    {
        for (const auto &[port, paths] : now_.on_port) {
            const auto found = wanted_.on_port.find(port);
            if (found == wanted_.on_port.end())
                continue;
            const arguments &was = now_.model[paths.front()].asked.given;
            const arguments &becomes = wanted_.model[found->second.front()].asked.given;
            if (!same_shaping(was, becomes) || paths.size() + found->second.size() > most_references)
                emptied_.insert(port);
        }
    }

    // What the undo of a path takes back is the newest one of equal ones.
    void mark_paths(const object_key &key)
    {
        const auto have = now_.all(key);
        const auto want = wanted_.all(key);
        const size_t stay = emptied_.contains(key.number) ? 0 : std::min(have.size(), want.size());
        now_.touch(have.subspan(stay));
        wanted_.touch(want.subspan(stay));
        const bool leaves = key.kind == object_kind::path && !wanted_.paths_to.contains(key.mac);
        if (emptied_.contains(key.number) || (crowded_ && leaves))
            for (const size_t i : have)
                first_[i] = true;
    }

    // For objects of which there is one of a key, other than paths and shapers. Parameters are set anew and never
    // removed.
    void mark_object(const object_key &key)
    {
        const auto have = now_.all(key);
        const auto want = wanted_.all(key);
        if (want.empty())
            return mark_removed(key, have);
        if (have.size() != want.size())
            plan_.refusals.push_back(
                fmt::format("{}: it was made {} times, and is undone only as a whole", name_of(key), have.size()));
        const node_object &was = now_.model[have.front()];
        const node_object &becomes = wanted_.model[want.front()];
        if (was.asked.given == becomes.asked.given)
            return;
        if (key.kind == object_kind::mp_id)
            return plan_.refusals.push_back(
                fmt::format("mpid: it cannot change from {} to {} in this process, because the library keeps it",
                            was.asked.given.number<int64_t>("MPID"), becomes.asked.given.number<int64_t>("MPID")));
        wanted_.touch(want);
        if (key.kind != object_kind::parameters)
            now_.touch(have);
    }

    void mark_removed(const object_key &key, std::span<const size_t> have)
    {
        const object_key whole = {.kind = object_kind::ebcom_service};
        if (key.kind == object_kind::scheduler_tree && !wanted_.all(whole).empty())
            return plan_.refusals.push_back(
                fmt::format("{}: it was made without the rest of the {}", name_of(key), name_of(whole)));
        now_.touch(have);
    }

    // Memberships of a PCEP that is removed are removed before it, and made again where they are wanted.
    void mark_members_of_new_pceps()
    {
        for (const auto &[key, objects] : now_.by_key) {
            const object_key pcep = {.kind = object_kind::pcep, .number = key.pcep};
            const auto have = now_.all(pcep);
            if (key.kind != object_kind::member || have.empty() || !now_.touched[have.front()])
                continue;
            now_.touch(objects);
            wanted_.touch(wanted_.all(key));
        }
    }

    // The path through which the accelerator would send after the steps marked so far may be another than the wanted
    // one.
    void mark_last_paths()
    {
        for (const auto &[mac, paths] : now_.paths_to) {
            const auto found = wanted_.paths_to.find(mac);
            if (found == wanted_.paths_to.end())
                continue;
            const indexes &want = found->second;
            const auto added = std::find_if(want.rbegin(), want.rend(), [&](size_t i) { return wanted_.touched[i]; });
            const object_key &last = added == want.rend() ? now_.model[paths.back()].key : wanted_.model[*added].key;
            if (last != wanted_.model[want.back()].key)
                renew(want.back());
        }
    }

    // The path exists, and is removed and added again.
    void renew(size_t path)
    {
        const auto have = now_.all(wanted_.model[path].key);
        const auto stays = std::find_if(have.rbegin(), have.rend(), [&](size_t i) { return !now_.touched[i]; });
        now_.touched[*stays] = true;
        wanted_.touched[path] = true;
        for (const size_t i : have)
            first_[i] = true;
    }

    // Members go before their groups and PCEPs, and come after them. Paths that have to go first do; the others are
    // removed only after new ones were added, so that a queue that both use stays.
    void put_in_order()
    {
        using enum object_kind;
        remove({member});
        remove({group});
        remove({pcep});
        remove({pcep_service});
        make({mp_id, parameters, interface, ebcom_service, scheduler_tree});
        remove({path, shaper}, [this](size_t i) { return first_[i]; });
        make({path, shaper});
        remove({path, shaper}, [this](size_t i) { return !first_[i]; });
        remove({interface, ebcom_service, scheduler_tree});
        make({pcep_service, pcep, group, member});
    }

    static bool is_one_of(std::initializer_list<object_kind> kinds, const node_object &object)
    {
        return std::ranges::find(kinds, object.key.kind) != kinds.end();
    }

    // The newest first.
    void remove(std::initializer_list<object_kind> kinds, const std::function<bool(size_t)> &due = nullptr)
    {
        for (size_t i = now_.model.size(); i-- > 0;)
            if (now_.touched[i] && is_one_of(kinds, now_.model[i]) && (!due || due(i)))
                plan_.steps.push_back(undo_of(now_.model[i].asked, table_).value());
    }

    // In the order of the model, in which the node file has them.
    void make(std::initializer_list<object_kind> kinds)
    {
        for (size_t i = 0; i < wanted_.model.size(); ++i)
            if (wanted_.touched[i] && is_one_of(kinds, wanted_.model[i]))
                plan_.steps.push_back(wanted_.model[i].asked);
    }

    void note_interruptions()
    {
        for (const int64_t port : emptied_)
            plan_.interrupted.push_back({{.kind = object_kind::queue, .number = port}});
        for (const auto &[mac, paths] : now_.paths_to)
            if (wanted_.paths_to.contains(mac) && first_[paths.back()])
                note_interruption(now_.model[paths.back()].key);
        for (const auto &[key, objects] : now_.by_key)
            if (key.kind == object_kind::pcep && now_.touched[objects.front()] && !wanted_.all(key).empty())
                plan_.interrupted.push_back({key});
    }

    // Of a destination that stays, and is sent through a path that is removed before it is added again.
    void note_interruption(const object_key &path)
    {
        const object_key queue = {.kind = object_kind::queue, .number = path.number};
        const auto queues = std::span(plan_.interrupted).first(emptied_.size());
        const auto noted = std::ranges::find(queues, queue, &interruption::object);
        if (noted != queues.end())
            noted->destinations.push_back(path.mac);
        else
            plan_.interrupted.push_back({path});
    }

    side now_;
    side wanted_;
    const command_table &table_;
    std::vector<bool> first_; // of what exists: it is removed before paths are added
    std::set<int64_t> emptied_;
    bool crowded_ = false;
    change_plan plan_;
};

} // namespace

change_plan plan_between(const node_model &now, const node_model &wanted, const command_table &table,
                         std::optional<size_t> room)
{
    return planner(now, wanted, table, room).plan();
}

} // namespace kelctl
