/*
 * control.h - a test over the process-wide node: switched on afresh, looked into, attached to.
 */
#ifndef TESTS_SOFTNODE_CONTROL_H
#define TESTS_SOFTNODE_CONTROL_H

#include "notation/json.h"
#include "platform/kel_init.h"
#include "platform/ork.h"
#include "softnode/softnode.h"
#include "tests/notation/print.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

/* Takes over a text that the control interface made; empty for null. */
std::string taken(char *text);

/* The node's snapshot. */
notation::document look_into_node();

/* What is wrong with the rules; empty when they were added. */
std::string add_faults(const char *rules);
std::string add_fault_file(const char *file);

/* The rules, and how many calls met each. */
notation::document fault_rules();

class ControlledNode : public testing::Test
{
protected:
    ControlledNode();

    void switch_on_afresh();

    /* What no refused call may change: everything but the counts of calls and of faults. */
    static notation::document held();

    ork_qos_scheduler_params scheduler_params(void *parent = nullptr) const;
    void *create_scheduler(void *parent = nullptr);
    void *add_queue(void *scheduler, std::uint32_t rate = 0, std::uint32_t bucket_size = 0);

    static ork_ebcom_pcep_params pcep_params(std::uint32_t id);
    std::uint64_t create_pcep(std::uint32_t id);
    std::uint64_t create_group(std::uint16_t id);

    /* The record that binds a PCEP. */
    ork_bind_params binding_of(std::uint32_t pcep_id) const;

    kel_attach_info attach{};
    std::uint16_t device = 0;
    void *ork = nullptr;
    int on_the_stack = 0;
    void *const foreign = &on_the_stack; /* a pointer that no closed library handed out */
};

#endif
