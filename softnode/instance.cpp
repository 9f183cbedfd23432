/*
 * instance.cpp - the process-wide node and its first minute.
 */
#include "softnode/instance.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

namespace softnode
{

namespace
{

constexpr const char *faults_variable = "KEL_SOFTNODE_FAULTS";
constexpr int unreadable_faults_status = 2;

void take_faults_from_environment(FaultBook &faults)
{
    const char *rules = std::getenv(faults_variable);
    if (!rules)
        return;
    const std::string problem = faults.add(rules);
    if (problem.empty())
        return;
    std::fprintf(stderr, "libkel-softnode: %s: %s\n", faults_variable, problem.c_str());
    _exit(unreadable_faults_status);
}

Instance *switch_on()
{
    auto fresh = std::make_unique<Instance>();
    take_faults_from_environment(fresh->node.faults);
    return fresh.release();
}

} // namespace

Instance &instance()
{
    static Instance *const here = switch_on();
    return *here;
}

} // namespace softnode
