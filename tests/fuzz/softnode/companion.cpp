/*
 * companion.cpp - calls of the companion, the formatting and the utility library and of the restart service.
 */
#include "caller.h"

#include "platform/kei_util.h"
#include "platform/kel_fmt.h"
#include "platform/qol_ng.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

namespace
{

void attach(Caller &caller)
{
    kel_init_attach(nullptr);
    caller.keep_attachment();
}

void get_device(Caller &caller)
{
    std::uint16_t found = 0;
    kel_init_eventdev_dev_id_ebcom_get(caller.maybe(found));
}

void get_vsi(Caller &caller)
{
    kel_vsi_t found = 0;
    kel_init_eventdev_vsi_ebcom_get(caller.maybe(found));
}

void add_queue(Caller &caller)
{
    const auto params = caller.record(kel_init_qos_queue_params{1, caller.id(), 25'600, caller.id()});
    void *created = nullptr;
    if (in_order(kel_init_qos_queue_add, {caller.maybe(params), caller.seldom() ? 4U : 5U, caller.pointer(scheduler),
                                          caller.device(), caller.maybe(created)}) == 0)
        caller.keep(queue, created);
}

void remove_queue(Caller &caller)
{
    kel_init_qos_queue_rem(caller.pointer(queue));
}

void read_queue_statistics(Caller &caller)
{
    qos_queue_stats stats{};
    in_order(kel_init_qos_queue_stats_get, {caller.pointer(queue), caller.maybe(stats)});
}

std::uint32_t some_id(std::uint32_t index)
{
    return index % 3;
}

std::uint64_t some_handle(std::uint32_t index)
{
    return std::uint64_t{index} << 32;
}

void dump_handles(Caller &caller)
{
    static std::FILE *const nowhere = std::fopen("/dev/null", "w");
    const std::string title = caller.input.text();
    in_order(kel_init_dump_ork_handles,
             {caller.seldom() ? nullptr : nowhere, caller.seldom() ? nullptr : title.c_str(), caller.octet(),
              caller.seldom() ? nullptr : some_id, caller.seldom() ? nullptr : some_handle});
}

void add_block(Caller &caller, char *into, std::uint32_t length, std::uint8_t layout)
{
    const auto global = caller.input.take<ebcom_global_stats>();
    const auto end = caller.input.take<ebcom_pcep_stats>();
    kel_fmt_ebcom_global_stats(into, length, layout, caller.maybe(global));
    kel_fmt_ebcom_pcep_inbound_stats(into, length, layout, caller.maybe(end.inbound));
    kel_fmt_ebcom_pcep_outbound_stats(into, length, layout, caller.maybe(end.outbound));
}

/* A table as it grows in one buffer, from whatever text is in there at first. */
void format(Caller &caller)
{
    const std::string before = caller.input.text();
    std::vector<char> buffer(caller.octet());
    std::copy_n(before.begin(), std::min(before.size(), buffer.size()), buffer.begin());
    const auto length = static_cast<std::uint32_t>(buffer.size());
    const auto layout = static_cast<std::uint8_t>(caller.input.below(4));
    char *const into = caller.seldom() ? nullptr : buffer.data();

    kel_fmt_header(into, length, layout, caller.input.text().c_str());
    for (std::size_t rows = caller.input.below(8); rows > 0; --rows) {
        const std::string label = caller.input.text();
        kel_fmt_uint32(into, length, layout, label.c_str(), caller.input.take<std::uint32_t>());
    }
    add_block(caller, into, length, layout);
    kel_fmt_end(into, length);
}

void get_texts(Caller &caller)
{
    require(kei_util_init_rc_str_get(caller.input.take<std::uint32_t>()) != nullptr);
    std::array<char, 18> text{};
    const auto mac = caller.input.take<std::array<std::uint8_t, 6>>();
    in_order(macAddr2str, {caller.seldom() ? nullptr : text.data(), caller.seldom() ? nullptr : mac.data()});
    require(text.back() == '\0');
}

void restart(Caller &caller)
{
    const std::string file = caller.input.text();
    const std::string reason = caller.input.text();
    in_order(qol_ng_restart_request_line_and_file,
             {caller.input.take<std::uint32_t>(), caller.seldom() ? nullptr : file.c_str(), 1U,
              caller.seldom() ? nullptr : reason.c_str(), 0U, nullptr});
}

constexpr std::array<Step, 10> steps{{attach, get_device, get_vsi, add_queue, remove_queue, read_queue_statistics,
                                      dump_handles, format, get_texts, restart}};

} // namespace

std::span<const Step> companion_steps()
{
    return steps;
}
