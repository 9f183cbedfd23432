/*
 * turn.h - whether requests may be carried out now.
 */
#ifndef SOFTNODE_TURN_H
#define SOFTNODE_TURN_H

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace softnode
{

/**
 * Locked by the one thread that carries requests out. Other threads keep it away, and come before it however much it has
 * to do.
 */
class Turn
{
public:
    void lock();
    void unlock();

    /** No request is begun until let_in(). True when none is left unfinished after this time. */
    bool keep_away(std::chrono::milliseconds longest);
    void let_in();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool taken_ = false;
    int keepers_ = 0;
};

} // namespace softnode

#endif
