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

/* Adds what was read, before the node is taken: a pipe may keep whoever reads it waiting. */
char *add_read(std::vector<FaultRule> rules, const std::string &problem)
{
    if (problem.empty())
        with_instance([&](Instance &here) { here.faults.add(std::move(rules)); });
    return text_unless_empty(problem);
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
    std::vector<FaultRule> read;
    const std::string problem = read_fault_file(file, read);
    return add_read(std::move(read), problem);
}

char *softnode_faults_add_text(const char *text, size_t size, uint32_t *line, uint32_t *column)
{
    FaultTextProblem wrong{.what = "no text: the pointer is null"};
    std::vector<FaultRule> read;
    if (text)
        wrong = read_fault_text({text, size}, read).value_or(FaultTextProblem{});
    if (line)
        *line = wrong.line;
    if (column)
        *column = wrong.column;
    return add_read(std::move(read), wrong.what);
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
