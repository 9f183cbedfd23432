/*
 * requests.h - the functions of softnode/softnode.h as requests: lines of JSON (docs/protocol.md).
 *
 *     {"function": "time_advance", "nanoseconds": 1000000}     {"result": null}
 *     {"function": "time"}                                     {"result": 1000000}
 *     {"function": "tide"}                                     {"error": "there is no function \"tide\"; ..."}
 */
#ifndef SOFTNODE_REQUESTS_H
#define SOFTNODE_REQUESTS_H

#include <exception>
#include <string>
#include <string_view>

namespace softnode
{

/** Calls the function. Both texts are lines without their end. Throws a std::exception when the request is wrong. */
std::string answer_to(std::string_view request);

} // namespace softnode

#endif
