// The operations that read counters.
#include "kelctl/node/statistics.h"

#include "kel/kel_core_ic_pcep.h"
#include "kelctl/library/library_call.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace kelctl
{
namespace
{

constexpr uint32_t longest_text = 4096; // octets; one that is longer fails with the formatting library's code

using text_buffer = std::array<char, longest_text>;

class statistics_reader
{
public:
    statistics_reader(session &session, counter_text layout)
        : session_(session), format_("format", static_cast<uint8_t>(layout))
    {
    }

    void read_ebcom()
    {
        text_buffer text{};
        if (succeeds(session_.ask("kel_core_ic_ebcom_global_fmt_stats_get", kel_core_ic_ebcom_global_fmt_stats_get,
                                  text_output(text), format_)))
            read_.ebcom = text.data();
    }

    void read_queue(int32_t port, const mac_address &found_by)
    {
        ebcom_queue_stats stats{};
        if (succeeds(session_.ask("kel_core_ic_ebcom_queue_stats_get", kel_core_ic_ebcom_queue_stats_get,
                                  input("dst_mac", found_by), output(stats))))
            read_.queues.push_back({port, stats});
    }

    void pass_over_queue(int32_t port)
    {
        read_.queues.push_back({port, std::nullopt});
    }

    void read_pcep(uint32_t id)
    {
        text_buffer text{};
        if (succeeds(session_.ask("kel_core_ic_pcep_fmt_stats_get", kel_core_ic_pcep_fmt_stats_get,
                                  value("pcep_id", id), text_output(text), format_)))
            read_.pceps.push_back({id, text.data()});
    }

    statistics take()
    {
        return std::move(read_);
    }

private:
    bool succeeds(result read)
    {
        std::ranges::move(read.failures, std::back_inserter(read_.failures));
        return read.status == exit_done;
    }

    session &session_;
    value<uint8_t> format_;
    statistics read_;
};

} // namespace

statistics read_statistics(const port_knowledge &ports, session &session, counter_text layout)
{
    statistics_reader reader(session, layout);
    reader.read_ebcom();
    for (const auto &[queue, port] : ports.port_of_queue) {
        const auto found_by = ports.found_by.find(queue);
        if (found_by != ports.found_by.end())
            reader.read_queue(port, found_by->second);
        else
            reader.pass_over_queue(port);
    }
    for (const made_command &made : session.made.all())
        if (made.asked.row->name == "pcep add")
            reader.read_pcep(made.asked.given.number<uint32_t>("ID"));
    return reader.take();
}

} // namespace kelctl
