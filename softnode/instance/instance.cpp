/*
 * instance.cpp - the process-wide node and its first minute.
 */
#include "softnode/instance/instance.h"

#include "softnode/faults/fault_text.h"
#include "softnode/serving/serving.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace softnode
{

namespace
{

constexpr const char *faults_variable = "KEL_SOFTNODE_FAULTS";
constexpr int unreadable_faults_status = 2;

/* "@FILE" or the rules themselves. */
std::string read_faults(const std::string &given, std::vector<FaultRule> &rules)
{
    if (given == "@")
        return "the file name after the @ is missing";
    return given.starts_with('@') ? read_fault_file(given.substr(1), rules) : read_given_faults(given, rules);
}

/* None in a process that has more rights than who started it. */
void take_faults_from_environment(Instance &fresh)
{
    const char *given = secure_getenv(faults_variable);
    if (!given)
        return;
    std::vector<FaultRule> rules;
    const std::string problem = read_faults(given, rules);
    if (problem.empty())
        fresh.faults.add(std::move(rules));
    else
        fresh.wrong_faults = std::string(faults_variable) + ": " + problem;
}

Instance *first_instance()
{
    auto fresh = std::make_unique<Instance>();
    take_faults_from_environment(*fresh);
    if (fresh->wrong_faults.empty())
        serve_from_environment();
    return fresh.release();
}

/* The pointer to the node. The first caller decides which node that is. */
Instance *&the_instance(Instance *(*first)())
{
    static Instance *here = first();
    return here;
}

} // namespace

Instance &instance()
{
    Instance &here = *the_instance(first_instance);
    if (here.wrong_faults.empty())
        return here;
    std::fprintf(stderr, "libkel-softnode: %s\n", here.wrong_faults.c_str());
    _exit(unreadable_faults_status);
}

const std::string &switch_on()
{
    return the_instance(first_instance)->wrong_faults;
}

/* An old one stays where it is: its lock may be held for good by a thread that did not come along. */
void start_over()
{
    the_instance([]() -> Instance * { return nullptr; }) = new Instance;
}

void Instance::reset()
{
    node.reset();
    faults.reset();
}

} // namespace softnode
