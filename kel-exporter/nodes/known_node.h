// What is known of a held node. Copied out of the thread that asks: a state is never changed, so copies share it.
#pragma once

#include "notation/document.h"

#include <chrono>
#include <memory>
#include <string>

namespace kel_exporter
{

using watch_clock = std::chrono::steady_clock;

// `file` and `state` stay after a node has gone down, `read` says of when they are.
struct known_node {
    std::string name;
    bool up = false;      // it answered when it was asked last
    std::string why = {}; // it is not up
    std::string file = {};
    watch_clock::time_point read = {};                         // when the state was
    std::shared_ptr<const notation::document> state = nullptr; // the answer to {"ask":"state"}; null: never read
};

} // namespace kel_exporter
