/*
 * serving.h - lets other processes ask this one's node: KEL_SOFTNODE_SOCKET names a socket, at which a thread answers.
 */
#ifndef SOFTNODE_SERVING_H
#define SOFTNODE_SERVING_H

namespace softnode
{

/**
 * Starts to serve the socket that the variable names; without it, and in a process that has more rights than who started
 * it, opens nothing and starts no thread. It reports on standard error why it cannot serve, and the process goes on.
 * Called once, when the node is switched on.
 *
 * The thread takes no signals. A child of fork() serves nothing and leaves its parent's socket alone. At exit the socket
 * is removed, and no request is carried out any more.
 */
void serve_from_environment();

} // namespace softnode

#endif
