/*
 * turn.cpp - a lock that its usual owner gets last.
 */
#include "softnode/serving/turn.h"

namespace softnode
{

void Turn::lock()
{
    std::unique_lock alone(mutex_);
    changed_.wait(alone, [this] { return keepers_ == 0; });
    taken_ = true;
}

void Turn::unlock()
{
    const std::lock_guard alone(mutex_);
    taken_ = false;
    changed_.notify_all();
}

bool Turn::keep_away(std::chrono::milliseconds longest)
{
    std::unique_lock alone(mutex_);
    ++keepers_;
    return changed_.wait_for(alone, longest, [this] { return !taken_; });
}

void Turn::let_in()
{
    const std::lock_guard alone(mutex_);
    --keepers_;
    changed_.notify_all();
}

} // namespace softnode
