/*
 * follower.h - a thread that follows the timing unit until a call fails, as a control process's timestamp thread does.
 */
#ifndef TESTS_SOFTNODE_FOLLOWER_H
#define TESTS_SOFTNODE_FOLLOWER_H

#include "platform/vorn_tu.h"
#include "softnode/softnode.h"

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

class Follower
{
public:
    Follower()
        : thread_([this] {
              ended_with_ = follow();
              ended_ = true;
          })
    {
    }

    ~Follower()
    {
        end();
    }

    Follower(const Follower &) = delete;
    Follower &operator=(const Follower &) = delete;

    void join()
    {
        if (thread_.joinable())
            thread_.join();
    }

    /* Resets the node until the thread ends: once is not enough for one that has not opened its connection yet. */
    void end()
    {
        while (!ended_) {
            softnode_reset();
            std::this_thread::yield();
        }
        join();
    }

    /* Both may be read while the follower is at rest, or after join(). */
    const std::vector<std::uint32_t> &events() const
    {
        return events_;
    }

    std::int32_t ended_with() const
    {
        return ended_with_;
    }

private:
    std::int32_t follow()
    {
        void *connection = nullptr;
        if (const std::int32_t rc = vorn_tu_init(&connection))
            return rc;
        if (const std::int32_t rc = vorn_tu_subscribe_adjnpuoffs(connection, 0))
            return rc;
        for (;;) {
            vorn_tu_event *event = nullptr;
            if (const std::int32_t rc = vorn_tu_wait_event(connection, &event))
                return rc;
            events_.push_back(event->type);
            if (const std::int32_t rc = vorn_tu_free_event(connection, &event))
                return rc;
        }
    }

    std::vector<std::uint32_t> events_;
    std::int32_t ended_with_ = 0;
    std::atomic<bool> ended_ = false;
    std::thread thread_; /* last: it uses the others */
};

#endif
