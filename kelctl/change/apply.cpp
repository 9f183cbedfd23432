// From two models to a plan, and from a plan that failed back to the old model. What is compared, planned and repaired
// is in the files beside this one.
#include "kelctl/change/apply.h"

#include "kelctl/change/change_plan.h"
#include "kelctl/change/difference.h"
#include "kelctl/change/discrepancies.h"
#include "kelctl/change/node_model.h"
#include "kelctl/change/repair.h"
#include "kelctl/input/interruption.h"
#include "kelctl/language/command_text.h"
#include "kelctl/node/load_node_file.h"
#include "text/quantity.h"
#include "text/wording.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

namespace kelctl
{
namespace
{

// A file that does not name an MP id leaves the one that there is.
node_model wanted_model(const std::vector<invocation> &lines, const node_model &now)
{
    node_model wanted = model_of(lines);
    const auto has_mp_id = [](const node_model &model) {
        return !model.empty() && model.front().key.kind == object_kind::mp_id;
    };
    if (has_mp_id(now) && !has_mp_id(wanted))
        wanted.insert(wanted.begin(), now.front());
    return wanted;
}

fields fields_of(const interruption &one)
{
    return {{"object", name_of(one.object)},
            {"destinations", list_of(one.destinations, [](const mac_address &mac) { return fields(to_text(mac)); })}};
}

std::string text_of(const interruption &one)
{
    if (one.object.kind != object_kind::queue)
        return fmt::format("interrupts {}", name_of(one.object));
    return fmt::format("interrupts {}: {}", name_of(one.object),
                       text::count_of(one.destinations.size(), "destination"));
}

std::string text_of(const std::vector<interruption> &interrupted, const page &page)
{
    return first_of(interrupted, "interrupts {} more", page,
                    [&](const interruption &one) { return line_on(page, text_of(one)); });
}

void warn_of(const std::vector<discrepancy> &found, result &done)
{
    for (const discrepancy &one : found)
        done.warnings.push_back(without_position(text_of(one)));
}

// Whether the platform was read back, and what it holds otherwise. `found`: the discrepancies, if it was.
void show_read_back(const std::optional<std::vector<discrepancy>> &found, result &done)
{
    done.shown["read_back"] = found.has_value();
    if (found)
        warn_of(*found, done);
    else
        done.warnings.push_back(without_position(std::string(not_read_back)));
}

// A change of a running node, step by step. The constructor makes the plan and describes it; carrying it out changes
// nothing of the description.
class change
{
public:
    change(const std::vector<invocation> &lines, session &session)
        : session_(session), before_(model_of(session)), wanted_(wanted_model(lines, before_)),
          differences_(differences(before_, wanted_)), room_(room_for_destinations()),
          found_before_(discrepancies(before_, session)), plan_(plan_between(before_, wanted_, session.table, room_))
    {
        done_.shown = {{"differences", fields_of(differences_)}};
        show_read_back(found_before_, done_);
        done_.shown["steps"] = list_of(plan_.steps, [](const invocation &one) { return fields(text_of(one)); });
        done_.shown["interrupted"] = list_of(plan_.interrupted, [](const interruption &one) { return fields_of(one); });
    }

    result show_plan()
    {
        refuse();
        for (const fields &step : done_.shown.at("steps"))
            text_ += step.text() + "\n";
        text_ += text_of(plan_.interrupted, session_.output_page());
        return take_result();
    }

    // New discrepancies are looked for after a success, too: the library may have succeeded while the accelerator did
    // not.
    result carry_out()
    {
        if (refuse())
            return take_result();
        const bool applied = perform_until_failure();
        done_.shown["applied"] = applied;
        if (!applied) {
            restore();
            return take_result();
        }
        text_ = text_of(differences_, session_.output_page()) + text_of(plan_.interrupted, session_.output_page());
        warn_of(new_discrepancies(model_of(session_)), done_);
        return take_result();
    }

private:
    bool refuse()
    {
        for (const std::string &one : plan_.refusals)
            done_.errors.push_back({one});
        if (!plan_.refusals.empty())
            done_.status = exit_operation_failed;
        return !plan_.refusals.empty();
    }

    // What fails leaves what it left: true when nothing did. A repair may find that something is left which no command
    // removes: the end reports that.
    bool perform(const invocation &step)
    {
        result made = session_.perform(step);
        std::ranges::move(made.complaints, std::back_inserter(done_.complaints));
        if (made.status == exit_done)
            return true;
        done_.status = exit_operation_failed;
        std::ranges::move(made.failures, std::back_inserter(done_.failures));
        std::ranges::move(made.errors, std::back_inserter(done_.errors));
        if (auto left = repair(step, made.code.value_or(0), session_))
            perhaps_left_.push_back(*std::move(left));
        return false;
    }

    // Signals are looked at between steps: a step is a call of the library, which ends soon.
    bool perform_until_failure()
    {
        size_t count = 0;
        for (const invocation &step : plan_.steps) {
            if (interrupted()) {
                done_.status = exit_operation_failed;
                done_.remark = fmt::format("interrupted after {} of {} steps; ", count, plan_.steps.size());
                return false;
            }
            if (!perform(step))
                return false;
            ++count;
        }
        return true;
    }

    // From what there is now, not back step by step: the order in which paths were added counts.
    void restore()
    {
        for (const invocation &step : plan_between(model_of(session_), before_, session_.table, room_).steps)
            perform(step);
        const node_model after = model_of(session_);
        fields left = fields::array();
        for (const node_change &one : differences(before_, after))
            left.push_back({{"object", name_of(one.object)}, {"what", what_became_of(one)}});
        for (const auto &found : {new_discrepancies(after), perhaps_left_})
            for (const discrepancy &one : found)
                left.push_back({{"object", one.object}, {"what", one.what}});
        done_.remark += left.empty() ? "the old node is restored" : "the old node is restored, but for:\n";
        for (const fields &one : left)
            done_.remark += fmt::format("  {}: {}\n", one.at("object").text(), one.at("what").text());
        done_.shown["left"] = std::move(left);
    }

    // Those that were not there before; none where the platform cannot be read back.
    std::vector<discrepancy> new_discrepancies(const node_model &after) const
    {
        auto found = discrepancies(after, session_).value_or(std::vector<discrepancy>());
        std::erase_if(found, [this](const discrepancy &one) {
            return std::ranges::find(*found_before_, one) != found_before_->end();
        });
        return found;
    }

    static std::string what_became_of(const node_change &one)
    {
        return one.was.empty() ? std::string(one.change)
                               : fmt::format("{}, {} became {}", one.change, one.was, one.becomes);
    }

    result take_result()
    {
        done_.text = text_.empty() && done_.status == exit_done ? "nothing differs" : text_;
        return std::move(done_);
    }

    session &session_;
    const node_model before_;
    const node_model wanted_;
    const std::vector<node_change> differences_;
    const std::optional<size_t> room_;
    const std::optional<std::vector<discrepancy>> found_before_;
    const change_plan plan_;
    std::vector<discrepancy> perhaps_left_; // by failed steps
    result done_;
    std::string text_;
};

} // namespace

// A discrepancy alone makes the status 1 as well: what is compared is then not what there is.
result difference_from(const std::vector<invocation> &wanted, session &session)
{
    const node_model now = model_of(session);
    const auto changes = differences(now, wanted_model(wanted, now));
    const auto found = discrepancies(now, session);
    result done;
    done.status = changes.empty() && (!found || found->empty()) ? exit_done : exit_operation_failed;
    done.text = changes.empty() ? "nothing differs" : text_of(changes, session.output_page());
    done.shown = {{"differences", fields_of(changes)}};
    show_read_back(found, done);
    return done;
}

result apply(const std::vector<invocation> &wanted, bool dry_run, session &session)
{
    change change(wanted, session);
    return dry_run ? change.show_plan() : change.carry_out();
}

} // namespace kelctl
