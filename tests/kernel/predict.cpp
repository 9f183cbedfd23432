// What the scheduler model makes of a tree and its load: reads them as lines, prints for each queue the octets that it
// sends and the frames that it drops in the time that is measured.
//
//     scheduler NAME ABOVE RATE BURST             ABOVE is - at the root; rates in kbit/s, sizes in octets
//     queue NAME ABOVE RATE BURST THRESHOLD
//     flow QUEUE OCTETS RATE
//     run SETTLE SECONDS
#include "softnode/traffic/port.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace
{

using namespace softnode;

constexpr std::uint64_t second = 1'000'000'000; // nanoseconds
constexpr std::uint32_t quantum = 3036;         // octets

struct Flow {
    std::string queue;
    std::uint32_t octets;
    std::uint64_t rate;
    std::uint64_t offered = 0; // frames

    Instant next() const
    {
        return offered * octets * 8'000'000 / rate;
    }
};

class Tree
{
public:
    void add_scheduler(const std::string &name, const std::string &above, Rate rate, std::uint32_t burst)
    {
        schedulers_[name] = std::make_unique<Scheduler>(Shaper({{rate, rate ? burst : 0}}, 0), quantum);
        port_.attach(*schedulers_[name], above == "-" ? nullptr : schedulers_.at(above).get());
    }

    void add_queue(const std::string &name, const std::string &above, const QueueParams &params)
    {
        queues_[name] = std::make_unique<Queue>(Handle::null, params, quantum, std::int8_t{0});
        port_.attach(*queues_[name], schedulers_.at(above).get());
    }

    void offer_until(Instant end, std::vector<Flow> &flows)
    {
        for (;;) {
            Flow &first = *std::ranges::min_element(flows, {}, &Flow::next);
            if (first.next() >= end)
                break;
            let_leave(first.next());
            port_.enter(*queues_.at(first.queue), there_, {1, first.octets, 0}, first.next());
            ++first.offered;
        }
        let_leave(end);
    }

    std::map<std::string, std::pair<std::uint64_t, std::uint64_t>> counted() const
    {
        std::map<std::string, std::pair<std::uint64_t, std::uint64_t>> all;
        for (const auto &[name, queue] : queues_)
            all[name] = {queue->counters[Fate::sent].octets, queue->counters[Fate::dropped].frames};
        return all;
    }

private:
    void let_leave(Instant until)
    {
        while (port_.depart(until))
            ;
    }

    Port port_;
    std::map<std::string, std::unique_ptr<Scheduler>> schedulers_;
    std::map<std::string, std::unique_ptr<Queue>> queues_;
    const std::vector<Mac> there_{Mac{}};
};

} // namespace

int main()
{
    Tree tree;
    std::vector<Flow> flows;
    std::string kind, name, above;
    while (std::cin >> kind) {
        if (kind == "scheduler") {
            Rate rate = 0;
            std::uint32_t burst = 0;
            std::cin >> name >> above >> rate >> burst;
            tree.add_scheduler(name, above, rate, burst);
        } else if (kind == "queue") {
            QueueParams params;
            std::cin >> name >> above >> params.rate >> params.bucket_size >> params.threshold;
            if (params.rate == 0)
                params.bucket_size = 0;
            tree.add_queue(name, above, params);
        } else if (kind == "flow") {
            Flow flow{};
            std::cin >> flow.queue >> flow.octets >> flow.rate;
            flows.push_back(flow);
        } else if (kind == "run") {
            std::uint64_t settle = 0;
            std::uint64_t seconds = 0;
            std::cin >> settle >> seconds;
            tree.offer_until(settle * second, flows);
            const auto before = tree.counted();
            tree.offer_until((settle + seconds) * second, flows);
            for (const auto &[queue, now] : tree.counted())
                std::cout << queue << ' ' << now.first - before.at(queue).first << ' '
                          << now.second - before.at(queue).second << '\n';
        }
        if (!std::cin) {
            std::cerr << "predict: " << kind << ": cannot be read\n";
            return 1;
        }
    }
}
