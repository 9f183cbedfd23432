/*
 * timing_user.cpp - numbering threads, and noticing their ends.
 */
#include "softnode/instance/timing_user.h"

#include "softnode/instance/instance.h"

#include <atomic>

namespace softnode
{

namespace
{

/* There is no call that closes a connection: the end of the thread shows that it is not used any more. */
class ThreadAsUser
{
public:
    ThreadAsUser() = default;

    ~ThreadAsUser()
    {
        with_node([this](Node &node) { node.timing.leave(user); });
        instance().user_moved.notify_all();
    }

    ThreadAsUser(const ThreadAsUser &) = delete;
    ThreadAsUser &operator=(const ThreadAsUser &) = delete;

    const User user = ++last_user;

private:
    static inline std::atomic<User> last_user = 0;
};

} // namespace

User this_thread()
{
    thread_local const ThreadAsUser self;
    return self.user;
}

} // namespace softnode
