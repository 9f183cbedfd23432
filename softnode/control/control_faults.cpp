/*
 * control_faults.cpp - the control interface of the software accelerator: making it fail, once or in every way.
 */
#include "softnode/softnode.h"

#include "softnode/faults/fault_codes.h"
#include "softnode/faults/fault_text.h"
#include "softnode/instance/instance.h"
#include "softnode/sweep/fault_sweep.h"
#include "softnode/views/snapshot.h"

#include <cstring>
#include <string>
#include <utility>
#include <vector>

using namespace softnode;

namespace
{

char *text_unless_empty(const std::string &text)
{
    return text.empty() ? nullptr : strdup(text.c_str());
}

char *sweep_report(const softnode_scenario *scenario, softnode_sweep_watcher *watcher)
{
    if (!scenario || !scenario->run)
        return nullptr;
    const auto report = fault_sweep(*scenario, watcher);
    return report ? strdup(report->c_str()) : nullptr;
}

} // namespace

char *softnode_switch_on()
{
    return text_unless_empty(switch_on());
}

char *softnode_faults_add(const char *rules)
{
    if (!rules)
        return strdup("no rules: the pointer is null");
    return text_unless_empty(with_instance([&](Instance &here) { return here.faults.add(rules); }));
}

char *softnode_faults_add_file(const char *file)
{
    if (!file)
        return strdup("no file: the pointer is null");
    std::vector<FaultRule> rules; /* read before the node is taken: a pipe may keep whoever reads it waiting */
    const std::string problem = read_fault_file(file, rules);
    if (problem.empty())
        with_instance([&](Instance &here) { here.faults.add(std::move(rules)); });
    return text_unless_empty(problem);
}

char *softnode_faults_add_text(const char *file, const char *text, size_t size)
{
    if (!file || !text)
        return strdup("no file or no text: the pointer is null");
    std::vector<FaultRule> rules;
    const std::string problem = read_fault_text_of(file, {text, size}, rules);
    if (problem.empty())
        with_instance([&](Instance &here) { here.faults.add(std::move(rules)); });
    return text_unless_empty(problem);
}

char *softnode_faults_json()
{
    return strdup(with_instance([](Instance &here) { return fault_list(here.faults); }).c_str());
}

char *softnode_fault_functions_json()
{
    return strdup(fault_function_list().c_str());
}

void softnode_faults_clear()
{
    with_instance([](Instance &here) {
        here.faults.clear();
        here.node.timing.let_go();
    });
    instance().released.notify_all();
}

uint32_t softnode_faults_release()
{
    const std::size_t count = with_node([](Node &node) { return node.timing.let_go(); });
    instance().released.notify_all();
    return static_cast<uint32_t>(count);
}

char *softnode_fault_sweep(const softnode_scenario *scenario)
{
    return sweep_report(scenario, nullptr);
}

char *softnode_fault_sweep_watched(const softnode_scenario *scenario, softnode_sweep_watcher *watcher)
{
    return sweep_report(scenario, watcher);
}
