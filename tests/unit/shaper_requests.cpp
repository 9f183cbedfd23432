#include "shaper_requests.h"

#include "expected.h"
#include "script.h"
#include "scripted_platform.h"
#include "transcript.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

void *group_scheduler(uint32_t group)
{
    return scripted::scheduler(8 + group);
}

void scheduler_tree_up()
{
    ASSERT_EQ(kel_ic_ebcom_init_qos(), 0U);
    transcript::forget();
}

kel_ebcom_path_config unshaped(int32_t iell_port, const mac_address &destination)
{
    kel_ebcom_path_config config{};
    std::ranges::copy(destination, config.dst_mac);
    config.iell_port = iell_port;
    return config;
}

kel_ebcom_path_config shaped(int32_t iell_port, uint32_t rate, uint32_t burst, uint32_t threshold)
{
    kel_ebcom_path_config config = unshaped(iell_port);
    config.shaping_enabled = 1;
    config.shaping_rate = rate;
    config.buffer_threshold = threshold;
    config.burst_size = burst;
    return config;
}

uint32_t add(const kel_ebcom_path_config &config)
{
    ork_ebcom_pcep_path path{};
    return kel_ic_ebcom_add_shaper(&config, &path);
}

uint32_t remove(const kel_ebcom_path_config &config)
{
    ork_ebcom_pcep_path path{};
    return kel_ic_ebcom_remove_shaper(&config, &path);
}

void *queue_of(const mac_address &destination)
{
    void *queue = untouched;
    const uint32_t rc = kel_ic_ebcom_queue_handle_get(destination.data(), &queue);
    EXPECT_EQ(rc, queue == untouched ? 4U : 0U);
    return queue;
}

void *scheduler_of(const mac_address &destination)
{
    void *scheduler = untouched;
    const uint32_t rc = kel_ic_ebcom_scheduler_handle_get(destination.data(), &scheduler);
    EXPECT_EQ(rc, scheduler == untouched ? 4U : 0U);
    return scheduler;
}

void port_in_use(int32_t iell_port, const ork_qos_queue &queue)
{
    scheduler_tree_up();
    ASSERT_EQ(add(unshaped(iell_port)), 0U);
    scripted::set_queue_record(queue);
    transcript::forget();
}

std::string queue_compared(const ork_qos_queue &queue, const kel_ebcom_path_config &config)
{
    return expected::with({scripted::text("rate = %lu, bucketSize = %u, shapingMode = %u", queue.rate, queue.bucketSize,
                                          queue.shapingMode),
                           scripted::text("shaping_rate = %u, burst_size = %u, shaping_enabled = %u",
                                          config.shaping_rate, config.burst_size, config.shaping_enabled)},
                          R"(
        kel_ic_ebcom_add_shaper:
          FN_ENTER EBCOM
        check_if_queue_params_has_changed:
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
          API_CALL EBCOM ork_qos_queue_get(0x9001)
          > ork_qos_queue_get(ork, 0x9001)
          LAB EBCOM Queue params: $1
          LAB EBCOM Config params: $2
    )");
}

ork_ebcom_pcep_path rubbish_path()
{
    ork_ebcom_pcep_path path;
    memset(&path, 0xA5, sizeof path);
    return path;
}

bool same(const ork_ebcom_pcep_path &one, const ork_ebcom_pcep_path &other)
{
    return memcmp(&one, &other, sizeof one) == 0;
}
