#include "expected.h"

#include "script.h"
#include "scripted_platform.h"

#include <algorithm>

namespace expected
{
namespace
{

constexpr uint32_t levels = 7;
constexpr uint32_t groups = 5;

std::string scheduler_removed(const void *scheduler)
{
    return scripted::text(R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_scheduler_delete(scheduler_hdl=%p)
          > ork_qos_scheduler_delete(ork, %p)
    )",
                          scheduler, scheduler);
}

std::string schedulers_released(const std::vector<void *> &schedulers)
{
    return R"(
        kel_ic_ebcom_deinit_qos:
          FN_ENTER EBCOM
    )" + schedulers_deleted(schedulers) +
           R"(
        kel_ic_ebcom_deinit_qos:
          FN_EXIT EBCOM
    )";
}

} // namespace

std::string scheduler_creation_announced()
{
    return R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_scheduler_create(tsScriptId=0, shapingMode=3, schedulingMode=11, arbitrationMode=7, serviceQuantum=3036, qosRates.peak.rate=0, qosRates.peak.bucketSize=0, qosRates.sr_mr_u.sustain.rate=0, sr_mr_u.sustain.bucketSize=0, lengthCorrection=0, outputIdSelect=0, bpDestIndex=0, timeScale=0)
          API_CALL EBCOM ork_qos_scheduler_create(rootId=20, orkRootParentLevel=0, vsiEthDevId=7)
    )";
}

// Each level hangs under the one before it, each group under the last level.
void *scheduler_parent(uint32_t n, uint32_t first)
{
    const uint32_t schedulers_above = std::min(n - 1, levels);
    return schedulers_above == 0 ? nullptr : scripted::scheduler(first + schedulers_above - 1);
}

std::string schedulers_created(uint32_t count, uint32_t first)
{
    std::string result = R"(
        create_scheduler:
    )";
    for (uint32_t n = 1; n <= count; ++n)
        result += scheduler_creation_announced() + scripted::text(R"(
          > ork_qos_scheduler_create(ork, parent %p, 0)
          INFO EBCOM ork_qos_scheduler_create handle: %p
    )",
                                                                  scheduler_parent(n, first),
                                                                  scripted::scheduler(first + n - 1));
    return result;
}

std::string scheduler_tree_built(uint32_t first)
{
    return R"(
        kel_ic_ebcom_init_qos:
          FN_ENTER EBCOM
          API_CALL EBCOM kel_init_eventdev_dev_id_ebcom_get()
          > kel_init_eventdev_dev_id_ebcom_get(0)
    )" + schedulers_created(levels + groups, first) +
           R"(
        kel_ic_ebcom_init_qos:
          FN_EXIT EBCOM
    )";
}

std::string schedulers_deleted(const std::vector<void *> &schedulers)
{
    std::string result = R"(
        remove_scheduler:
    )";
    for (const void *scheduler : schedulers)
        result += scheduler_removed(scheduler);
    return result;
}

std::string scheduler_tree_released(uint32_t first)
{
    std::vector<void *> children_first;
    for (uint32_t group = 0; group < groups; ++group)
        children_first.push_back(scripted::scheduler(first + levels + group));
    for (uint32_t level = levels; level > 0; --level)
        children_first.push_back(scripted::scheduler(first + level - 1));
    return schedulers_released(children_first);
}

std::string empty_scheduler_tree_released()
{
    return schedulers_released(std::vector<void *>(groups + levels));
}

std::string with(const std::vector<std::string> &values, std::string text)
{
    for (size_t at = 0; (at = text.find('$', at)) != std::string::npos;) {
        const std::string &value = values.at(static_cast<size_t>(text.at(at + 1) - '1'));
        text.replace(at, 2, value);
        at += value.size();
    }
    return text;
}

} // namespace expected
