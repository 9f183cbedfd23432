/*
 * control.cpp - what the tests over the process-wide node share.
 */
#include "control.h"

#include <cstdlib>
#include <memory>

std::string taken(char *text)
{
    const std::unique_ptr<char, void (*)(void *)> owner(text, std::free);
    return owner ? owner.get() : "";
}

notation::document look_into_node()
{
    return notation::read_json(taken(softnode_snapshot_json()));
}

std::string add_faults(const char *rules)
{
    return taken(softnode_faults_add(rules));
}

std::string add_fault_file(const char *file)
{
    return taken(softnode_faults_add_file(file));
}

notation::document fault_rules()
{
    return notation::read_json(taken(softnode_faults_json()));
}

ControlledNode::ControlledNode()
{
    switch_on_afresh();
    EXPECT_EQ(kel_init_eventdev_dev_id_ebcom_get(&device), 0U);
}

void ControlledNode::switch_on_afresh()
{
    softnode_reset();
    EXPECT_EQ(kel_init_attach(&attach), 0U);
    ork = attach.ork_handle;
}

notation::document ControlledNode::held()
{
    notation::document document = look_into_node();
    std::erase_if(document.members(), [](const auto &one) { return one.name == "calls" || one.name == "faults"; });
    return document;
}

ork_qos_scheduler_params ControlledNode::scheduler_params(void *parent) const
{
    ork_qos_scheduler_params params{};
    params.parent = parent;
    params.schedulingMode = 11;
    params.arbitrationMode = 7;
    params.vsiEthDevId = device;
    return params;
}

void *ControlledNode::create_scheduler(void *parent)
{
    const ork_qos_scheduler_params params = scheduler_params(parent);
    void *scheduler = nullptr;
    EXPECT_EQ(ork_qos_scheduler_create(ork, &params, 0, &scheduler), ORK_OK);
    return scheduler;
}

void *ControlledNode::add_queue(void *scheduler, std::uint32_t rate, std::uint32_t bucket_size)
{
    const kel_init_qos_queue_params params{1, rate, 5'120'000, bucket_size};
    void *queue = nullptr;
    EXPECT_EQ(kel_init_qos_queue_add(&params, 5, scheduler, device, &queue), 0U);
    return queue;
}

ork_ebcom_pcep_params ControlledNode::pcep_params(std::uint32_t id)
{
    ork_ebcom_pcep_params params{};
    params.localPcepId = id;
    params.byte28 = 1;
    return params;
}

std::uint64_t ControlledNode::create_pcep(std::uint32_t id)
{
    const ork_ebcom_pcep_params params = pcep_params(id);
    std::uint64_t pcep = 0;
    EXPECT_EQ(ork_ebcom_pcep_create(ork, &params, &pcep), ORK_OK);
    return pcep;
}

std::uint64_t ControlledNode::create_group(std::uint16_t id)
{
    const ork_ebcom_multicast_group params{id, {}};
    std::uint64_t group = 0;
    EXPECT_EQ(ork_ebcom_multicast_group_create(ork, &params, &group, 0), ORK_OK);
    return group;
}

ork_bind_params ControlledNode::binding_of(std::uint32_t pcep_id) const
{
    ork_bind_params params{};
    params.word0 = 4;
    params.word4 = 1;
    params.word8 = 1;
    params.ork_handle = ork;
    params.pcep_id = pcep_id;
    params.word36 = 2;
    params.target = attach.ehsfp_target;
    params.word60 = 2;
    params.byte84 = 1;
    return params;
}
