/*
 * attachment.cpp - the three handles of an attachment.
 */
#include "softnode/node/attachment.h"

namespace softnode
{

Handle Attachment::system() const
{
    return system_;
}

Handle Attachment::driver_kit() const
{
    return driver_kit_;
}

Handle Attachment::ehsfp_target() const
{
    return ehsfp_target_;
}

Refusal Attachment::check_driver_kit(Handle handle) const
{
    return driver_kits_.judge(handle, handle == driver_kit_);
}

Refusal Attachment::check_system(Handle handle) const
{
    return systems_.judge(handle, handle == system_);
}

Refusal Attachment::check_ehsfp_target(Handle handle) const
{
    return ehsfp_targets_.judge(handle, handle == ehsfp_target_);
}

void Attachment::reset()
{
    system_ = systems_.next();
    driver_kit_ = driver_kits_.next();
    ehsfp_target_ = ehsfp_targets_.next();
}

} // namespace softnode
