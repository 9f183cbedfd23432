// Objects of both models by their keys. Nothing is decided here about how one becomes the other: change_plan.cpp.
#include "kelctl/change/difference.h"

#include "kelctl/language/command_text.h"
#include "kelctl/values/ic_port.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <utility>

namespace kelctl
{
namespace
{

constexpr std::string_view shaping[] = {"--rate", "--burst", "--threshold", "--shaping"};

bool same_argument(const arguments &one, const arguments &other, std::string_view name)
{
    const argument_value *value = one.find(name);
    const argument_value *other_value = other.find(name);
    return value && other_value ? *value == *other_value : value == other_value;
}

// "vlan 100, priority 5" of the arguments in which it differs from the other.
std::string settings_of(const node_object &one, const node_object &other)
{
    std::vector<std::string> parts;
    for (const argument &each : one.asked.row->arguments) {
        const argument_value *value = one.asked.given.find(each.name);
        if (!value || same_argument(one.asked.given, other.asked.given, each.name))
            continue;
        const std::string name = each.name.substr(each.name.find_first_not_of('-'));
        parts.push_back(each.is_option() ? fmt::format("{} {}", name, word_of(each.kind, *value))
                                         : word_of(each.kind, *value));
    }
    return text::joined(parts, ", ");
}

std::string shaping_text(const node_object &one, const node_object &other)
{
    std::string settings = settings_of(one, other);
    if (one.asked.given.has("--rate"))
        return settings;
    return settings.empty() ? "unshaped" : "unshaped, " + settings;
}

struct both {
    std::vector<const node_object *> now;
    std::vector<const node_object *> wanted;
};

// One pass through each model; a map sorts the objects by their keys, so the changes come in that order.
class comparison
{
public:
    comparison(const node_model &now, const node_model &wanted)
    {
        collect(now, &both::now);
        collect(wanted, &both::wanted);
    }

    std::vector<node_change> compare()
    {
        for (const auto &[key, objects] : objects_)
            key.kind == object_kind::queue ? compare_queue(key, objects) : compare_objects(key, objects);
        return std::move(found_);
    }

private:
    // The paths and shapers of a port are those of its queue, too; the first one makes it.
    void collect(const node_model &model, std::vector<const node_object *> both::*side)
    {
        for (const node_object &one : model) {
            (objects_[one.key].*side).push_back(&one);
            if (one.key.kind == object_kind::path)
                (paths_to_[one.key.mac].*side).push_back(&one);
            if (uses_queue(one.key))
                (objects_[{.kind = object_kind::queue, .number = one.key.number}].*side).push_back(&one);
        }
    }

    void compare_queue(const object_key &key, const both &queue)
    {
        if (queue.now.empty() || queue.wanted.empty())
            return; // it comes and goes with its paths
        const node_object &now = *queue.now.front();
        const node_object &wanted = *queue.wanted.front();
        if (!same_shaping(now.asked.given, wanted.asked.given))
            found_.push_back({key, "changed", shaping_text(now, wanted), shaping_text(wanted, now)});
    }

    // Objects with one key are alike but for their settings; of paths and shapers these are the queue's.
    void compare_objects(const object_key &key, const both &objects)
    {
        for (size_t i = objects.wanted.size(); i < objects.now.size(); ++i)
            found_.push_back({key, "removed"});
        for (size_t i = objects.now.size(); i < objects.wanted.size(); ++i)
            found_.push_back({key, "added"});
        if (objects.now.empty() || objects.wanted.empty())
            return;
        if (key.kind == object_kind::path)
            compare_last(*objects.wanted.back());
        else if (!uses_queue(key) && objects.now.front()->asked.given != objects.wanted.front()->asked.given)
            found_.push_back({key, "changed", settings_of(*objects.now.front(), *objects.wanted.front()),
                              settings_of(*objects.wanted.front(), *objects.now.front())});
    }

    // Of a path that is to be the last one to its destination.
    void compare_last(const node_object &path)
    {
        const both &paths = paths_to_.at(path.key.mac);
        const object_key &last = paths.now.back()->key;
        const bool remains =
            std::ranges::any_of(paths.wanted, [&](const node_object *one) { return one->key == last; });
        if (paths.wanted.back()->key == path.key && last != path.key && remains)
            found_.push_back({path.key, "changed",
                              fmt::format("used: {}", port_text(static_cast<int32_t>(last.number))),
                              fmt::format("used: {}", port_text(static_cast<int32_t>(path.key.number)))});
    }

    std::map<object_key, both> objects_;
    std::map<mac_address, both> paths_to_;
    std::vector<node_change> found_;
};

} // namespace

bool same_shaping(const arguments &one, const arguments &other)
{
    return std::ranges::all_of(shaping, [&](std::string_view name) { return same_argument(one, other, name); });
}

std::vector<node_change> differences(const node_model &now, const node_model &wanted)
{
    return comparison(now, wanted).compare();
}

fields fields_of(const std::vector<node_change> &changes)
{
    const auto text_or_null = [](const std::string &text) { return text.empty() ? fields(nullptr) : fields(text); };
    return list_of(changes, [&](const node_change &one) -> fields {
        return {{"object", name_of(one.object)},
                {"change", one.change},
                {"was", text_or_null(one.was)},
                {"becomes", text_or_null(one.becomes)}};
    });
}

std::string text_of(const std::vector<node_change> &changes, const page &page)
{
    return first_of(changes, "{} more objects", page, [&](const node_change &one) {
        std::string text = line_on(page, fmt::format("{:<7}  {}", one.change, name_of(one.object)));
        if (!one.was.empty())
            text += line_on(page, "         from " + one.was) + line_on(page, "         to   " + one.becomes);
        return text;
    });
}

} // namespace kelctl
