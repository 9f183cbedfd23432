// Running steps up and down.
#include "kelctl/bring_up.h"

#include <utility>

namespace kelctl
{

bring_up::bring_up(std::vector<step> steps, trace_log &log) : steps_(std::move(steps)), log_(log)
{
}

bring_up::~bring_up()
{
    down();
}

std::optional<failure> bring_up::up(const step_listener &on_made, const stop_question &stop)
{
    while (made_ < steps_.size() && !stop()) {
        if (auto failed = run(steps_[made_].make, log_)) {
            failed_ = true;
            return failed;
        }
        on_made(++made_);
    }
    return std::nullopt;
}

bool bring_up::whole() const
{
    return made_ == steps_.size();
}

take_down bring_up::down()
{
    take_down done;
    if (std::exchange(failed_, false) && steps_[made_].failure_leaves_something)
        done.refused_leftover = undo(steps_[made_], done);
    while (made_ > 0)
        if (auto refused = undo(steps_[--made_], done))
            done.refused.push_back(std::move(*refused));
    return done;
}

std::span<const step> bring_up::let_stand()
{
    failed_ = false;
    return {steps_.data(), std::exchange(made_, 0)};
}

std::optional<refused_undo> bring_up::undo(const step &made, take_down &done)
{
    if (!made.undo.call)
        return std::nullopt;
    if (auto failed = run(made.undo, log_))
        return refused_undo{std::move(*failed), made.makes};
    done.undone.push_back({made.undo.text(), made.makes, log_.operation_failures()});
    return std::nullopt;
}

} // namespace kelctl
