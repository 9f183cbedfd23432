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
        done.refused_leftover = run(steps_[made_].undo, log_);
    while (made_ > 0)
        if (auto failed = run(steps_[--made_].undo, log_))
            done.failures.push_back(std::move(*failed));
    return done;
}

} // namespace kelctl
