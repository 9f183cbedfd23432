// Owners of what libbabeltrace2 returns: each puts its reference when it is destroyed. Plain pointers of that library
// are borrowed.
#pragma once

#include <babeltrace2/babeltrace.h>

#include <memory>
#include <string>

namespace kel_trace
{

template <auto put_back> struct bt_put {
    void operator()(const auto *object) const
    {
        put_back(object);
    }
};

template <typename Object, auto put_back> using bt_handle = std::unique_ptr<Object, bt_put<put_back>>;

using bt_plugin_handle = bt_handle<const bt_plugin, bt_plugin_put_ref>;
using bt_graph_handle = bt_handle<const bt_graph, bt_graph_put_ref>;
using bt_value_handle = bt_handle<bt_value, bt_value_put_ref>;
using bt_message_handle = bt_handle<const bt_message, bt_message_put_ref>;
using bt_iterator_handle = bt_handle<bt_message_iterator, bt_message_iterator_put_ref>;
using bt_sink_class_handle = bt_handle<bt_component_class_sink, bt_component_class_sink_put_ref>;

// The innermost reason of the thread's error, which is taken away.
inline std::string taken_reason()
{
    const bt_error *error = bt_current_thread_take_error();
    if (!error)
        return "it cannot be read";
    std::string reason = bt_error_cause_get_message(bt_error_borrow_cause_by_index(error, 0));
    bt_error_release(error);
    return reason;
}

} // namespace kel_trace
