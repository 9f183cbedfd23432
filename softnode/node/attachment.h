/*
 * attachment.h - what an attachment hands out: the system handle, the driver-kit handle, the EHSFP target.
 *
 * There is one of each from switching on to switching off, and every attach yields the same three.
 */
#ifndef SOFTNODE_ATTACHMENT_H
#define SOFTNODE_ATTACHMENT_H

#include "softnode/common/handle.h"

namespace softnode
{

class Attachment
{
public:
    Handle system() const;
    Handle driver_kit() const;
    Handle ehsfp_target() const;

    /** Whether the handle is valid as first argument of a driver-kit call. */
    Refusal check_driver_kit(Handle handle) const;

    /** Whether the handle is valid as first argument of a binding. */
    Refusal check_system(Handle handle) const;

    /** Whether PCEPs can be bound to it. */
    Refusal check_ehsfp_target(Handle handle) const;

    void reset();

private:
    HandleSeries systems_{Kind::system};
    HandleSeries driver_kits_{Kind::driver_kit};
    HandleSeries ehsfp_targets_{Kind::ehsfp_target};
    Handle system_ = systems_.next();
    Handle driver_kit_ = driver_kits_.next();
    Handle ehsfp_target_ = ehsfp_targets_.next();
};

} // namespace softnode

#endif
